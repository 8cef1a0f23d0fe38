#pragma once

// Starting a program as a child process and waiting for it, over
// posix_spawn: no shell is involved, the arguments reach the program as
// given.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vantel {

struct ChildProcessSetup {
    std::string executable;                          // a path; not searched for on PATH
    std::vector<std::string> arguments;              // without the program's own name
    std::optional<std::vector<std::string>> environment;  // "NAME=value"; absent: this process's
    std::optional<std::filesystem::path> directory;  // absent: this process's
    int standardInput = -1;                          // descriptors for the child; -1 keeps ours
    int standardOutput = -1;
    int standardError = -1;
};

// How a child ended: its exit status, or the signal that killed it.
struct ChildExit {
    bool bySignal = false;
    int status = 0;  // the exit status, or the signal's number
};

// The child's process id. Throws std::system_error when it cannot be started
// (no such program, not executable, no such directory).
int startChildProcess(const ChildProcessSetup& setup);

// Blocks until the child ends.
ChildExit waitForChildProcess(int processId);

// A pipe's two ends, closed on exec in this process; throws std::system_error.
struct PipeDescriptors {
    int reading = -1;
    int writing = -1;
};
PipeDescriptors makePipe();

}  // namespace vantel
