#include <Platform/ChildProcess.hpp>

#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

extern char** environ;

namespace vantel {

namespace {

[[noreturn]] void throwSystemError(int error, const std::string& what) {
    throw std::system_error(error, std::system_category(), what);
}

// argv/envp for posix_spawn: pointers into the strings, null-terminated.
std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> result;
    for (std::string& text : strings) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&actions_); }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void redirect(int from, int to) {
        if (from >= 0) check(posix_spawn_file_actions_adddup2(&actions_, from, to));
    }
    void changeDirectory(const std::filesystem::path& directory) {
        check(posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str()));
    }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    static void check(int error) {
        if (error != 0) throwSystemError(error, "cannot prepare the child process");
    }
    posix_spawn_file_actions_t actions_;
};

}  // namespace

int startChildProcess(const ChildProcessSetup& setup) {
    FileActions actions;
    actions.redirect(setup.standardInput, STDIN_FILENO);
    actions.redirect(setup.standardOutput, STDOUT_FILENO);
    actions.redirect(setup.standardError, STDERR_FILENO);
    if (setup.directory) actions.changeDirectory(*setup.directory);
    std::vector<std::string> argv{setup.executable};
    argv.insert(argv.end(), setup.arguments.begin(), setup.arguments.end());
    std::vector<std::string> envp = setup.environment.value_or(std::vector<std::string>{});
    std::vector<char*> argvPointers = pointers(argv);
    std::vector<char*> envpPointers = pointers(envp);
    pid_t child = 0;
    int error = posix_spawn(&child, setup.executable.c_str(), actions.get(), nullptr, argvPointers.data(),
                            setup.environment ? envpPointers.data() : environ);
    if (error != 0) throwSystemError(error, "cannot start " + setup.executable);
    return child;
}

ChildExit waitForChildProcess(int processId) {
    int status = 0;
    while (waitpid(processId, &status, 0) < 0) {
        if (errno != EINTR) throwSystemError(errno, "cannot wait for process " + std::to_string(processId));
    }
    if (WIFSIGNALED(status)) return {true, WTERMSIG(status)};
    return {false, WEXITSTATUS(status)};
}

PipeDescriptors makePipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throwSystemError(errno, "cannot make a pipe");
    return {ends[0], ends[1]};
}

}  // namespace vantel
