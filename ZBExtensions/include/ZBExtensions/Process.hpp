#pragma once

// Running a configured program to completion and collecting what it wrote:
// a Task (the child-process object) with Pipes for its output, run() that
// launches, waits and reads, and ProcessError for a non-zero exit.
//
// run() reads the pipes only after the child has exited. A child that
// writes more than a pipe holds (64 KiB on Linux) before exiting blocks on
// the full pipe while run() waits for it to exit: the two wait for each other
// for ever. run() is for programs with short output; read a Pipe while the
// child runs for anything longer.

#include <Platform/Data.hpp>
#include <Platform/URL.hpp>

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantel {

// One end of a pipe or another readable descriptor; closes it when the last
// reference goes.
class FileHandle {
public:
    explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
    ~FileHandle();
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    int descriptor() const { return descriptor_; }
    void close();

    // Blocks until the end of the data.
    Data readDataToEndOfFile() const;

private:
    int descriptor_;
};

class Pipe {
public:
    Pipe();  // throws std::system_error
    std::shared_ptr<FileHandle> fileHandleForReading;
    std::shared_ptr<FileHandle> fileHandleForWriting;

    // Reads to the end of the data (blocking); absent when not valid UTF-8.
    std::optional<std::string> readStringToEndOfFile() const;
    // The same text and a newline on standard output, or nothing.
    void printPipe() const;
};

// A program to run, configured by the caller before run().
class Task {
public:
    enum class TerminationReason { exit = 1, uncaughtSignal = 2 };

    std::optional<std::string> launchPath;
    std::optional<std::vector<std::string>> arguments;
    std::optional<std::vector<std::string>> environment;  // "NAME=value"; absent: inherited
    std::optional<URL> currentDirectoryURL;
    // Absent: inherited. run() replaces the output and error pipes but leaves
    // standard input as configured: write what the program should read into
    // its writing end (and close that end, or the program waits for more).
    // The task closes its copy of the reading end once the program starts.
    std::shared_ptr<Pipe> standardInput;
    std::shared_ptr<Pipe> standardOutput;
    std::shared_ptr<Pipe> standardError;

    // Throws std::system_error when the program cannot be started.
    void launch();
    void waitUntilExit();

    // After the task ended: the exit status, or the number of the signal.
    std::int32_t terminationStatus() const { return terminationStatus_; }
    TerminationReason terminationReason() const { return terminationReason_; }

private:
    int processId_ = -1;
    std::int32_t terminationStatus_ = 0;
    TerminationReason terminationReason_ = TerminationReason::exit;
};

struct ProcessOutput {
    std::int32_t terminationStatus = 0;
    Data response;

    // `response` as UTF-8; absent when it is not valid UTF-8.
    std::optional<std::string> responseString() const;
};

class ProcessError : public std::exception {
public:
    ProcessError(std::shared_ptr<const Task> task, Data stdOut, Data stdErr);

    std::shared_ptr<const Task> task;
    Data stdOut;
    Data stdErr;
    std::optional<std::string> stdOutString;  // decoded once, here
    std::optional<std::string> stdErrString;

    // "exited with uncaught signal: 9" for a death by signal, otherwise
    // "exited normally" (whatever the exit status: the streams say more).
    std::string localizedDescription() const;
    // What the program wrote to standard error, if it was valid UTF-8.
    std::optional<std::string> failureReason() const { return stdErrString; }
    const char* what() const noexcept override { return description_.c_str(); }

private:
    std::string description_;
};

// Attaches new pipes for standard output and error, sets the task's
// directory to `workingDir` (also when absent), prints the directory and
// the command line when `verbose`, launches, waits, then reads output and
// error. Throws ProcessError for a non-zero exit.
ProcessOutput run(const std::shared_ptr<Task>& task, const std::optional<URL>& workingDir, bool verbose);
// The same without touching the directory and without its line.
ProcessOutput run(const std::shared_ptr<Task>& task, bool verbose);

// Watches the handle in the background and calls `handler` with the first
// terminal title ("ESC ] digit ; word BEL") of each chunk of data read. The
// observer is process-wide and never removed: it sees the data of every
// handle watched this way, so the handler of one call also hears titles from
// handles watched by other calls. The handler runs on a background thread.
void readTitle(const std::shared_ptr<FileHandle>& handle, std::function<void(const std::string&)> handler);

// The title found in a chunk, as readTitle's observer finds it.
std::optional<std::string> terminalTitle(const std::string& text);

}  // namespace vantel
