#pragma once

// What this process has made and must not leave behind when Ctrl+C, SIGTERM
// or a closed terminal ends it: temporary files beside an output, downloads
// in the temporary folder, and a file being filled in place. Every place
// that makes one holds a CleanupOnSignal for as long as the file is its own.
// Once installSignalCleanup has run, those signals remove each registered
// path (or empty each registered file) and end the process with 128 + the
// signal's number.

#include <filesystem>

namespace vantel {

class CleanupOnSignal {
public:
    CleanupOnSignal() = default;
    // The path is removed if a signal ends the process. Registered before the
    // file is made (createRemovedOnSignal does both), so that no moment is
    // left when it exists unregistered. Throws std::system_error when
    // thousands are already held.
    static CleanupOnSignal removing(const std::filesystem::path& path);
    // The open file is cut back to empty, as it was before it was filled.
    static CleanupOnSignal emptying(int fd);

    CleanupOnSignal(CleanupOnSignal&& other) noexcept;
    CleanupOnSignal& operator=(CleanupOnSignal&& other) noexcept;
    CleanupOnSignal(const CleanupOnSignal&) = delete;
    CleanupOnSignal& operator=(const CleanupOnSignal&) = delete;
    // Forgets the file without touching it: it has been renamed into place,
    // removed, or filled completely.
    ~CleanupOnSignal();
    void release() noexcept;

private:
    explicit CleanupOnSignal(int slot) : slot_(slot) {}
    int slot_ = -1;
};

// Makes a new file (open(2) with O_CREAT | O_EXCL added to `flags`) that
// `cleanup` removes if a signal ends the process, even when the signal is
// handled on another thread while the file is being made. The descriptor, or
// -1 with errno set.
int createRemovedOnSignal(const std::filesystem::path& path, int flags, unsigned mode, CleanupOnSignal& cleanup);

// Handles SIGINT, SIGTERM and SIGHUP, except those ignored when the process
// started (a background job, nohup). Call once, before any thread starts.
void installSignalCleanup();

}  // namespace vantel
