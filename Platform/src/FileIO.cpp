#include <Platform/FileIO.hpp>

#include <Platform/TemporaryFiles.hpp>
#include <Platform/UUID.hpp>

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <string>
#include <system_error>

namespace vantel {

namespace {

[[noreturn]] void throwFileError(const std::string& what, const std::filesystem::path& path,
                                 int error) {
    throw std::filesystem::filesystem_error(what, path, std::error_code(error, std::system_category()));
}

// Closes on scope exit; close errors after a write are checked by hand.
class FileDescriptor {
public:
    explicit FileDescriptor(int fd) : fd_(fd) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    int get() const { return fd_; }
    int release() {
        int fd = fd_;
        fd_ = -1;
        return fd;
    }

private:
    int fd_;
};

void writeAll(int fd, const Data& data, const std::filesystem::path& path) {
    std::size_t written = 0;
    while (written < data.size()) {
        ssize_t count = ::write(fd, data.data() + written, data.size() - written);
        if (count < 0) {
            if (errno == EINTR) continue;
            throwFileError("cannot write file", path, errno);
        }
        written += static_cast<std::size_t>(count);
    }
}

void closeChecked(FileDescriptor& file, const std::filesystem::path& path) {
    if (::close(file.release()) != 0) throwFileError("cannot write file", path, errno);
}

// A new file beside the target under a random name; created exclusively, with
// the permissions any new file gets, and removed if a signal ends the process.
struct TemporaryBeside {
    std::filesystem::path path;
    CleanupOnSignal cleanup;
    int fd = -1;
};

TemporaryBeside createTemporaryBeside(const std::filesystem::path& target) {
    std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
    TemporaryBeside temporary;
    for (int attempt = 0; attempt < 16; ++attempt) {
        temporary.path = folder / ("." + target.filename().string() + "." + UUID::random().uuidString());
        temporary.fd = createRemovedOnSignal(temporary.path, O_WRONLY | O_CLOEXEC, 0666, temporary.cleanup);
        if (temporary.fd >= 0 || errno != EEXIST) break;
    }
    if (temporary.fd < 0) throwFileError("cannot write file", target, errno);
    return temporary;
}

// Waits until the pipe or device has something to read, or has ended.
void waitForInput(int fd, const std::filesystem::path& name) {
    pollfd waiting{fd, POLLIN, 0};
    for (;;) {
        int ready = ::poll(&waiting, 1, quietInputSeconds * 1000);
        if (ready > 0) return;
        if (ready == 0) {
            throw std::filesystem::filesystem_error(
                "cannot read file", name, std::error_code(static_cast<int>(FileError::nothingArrived), fileErrorCategory()));
        }
        if (errno != EINTR) throwFileError("cannot read file", name, errno);
    }
}

// At most maximumBytes from the descriptor, to its end. A descriptor that
// `waits` is non-blocking and polled before each read.
Data readDescriptor(int fd, std::size_t maximumBytes, const std::filesystem::path& name, bool waits = false) {
    struct stat status {};
    if (::fstat(fd, &status) != 0) throwFileError("cannot read file", name, errno);
    Data data;
    // The size is a hint only: files in /proc report 0, others may grow.
    auto expected = static_cast<std::size_t>(status.st_size > 0 ? status.st_size : 0);
    data.reserve(std::min(expected, maximumBytes));
    constexpr std::size_t chunk = 1 << 16;
    while (data.size() < maximumBytes) {
        std::size_t used = data.size();
        std::size_t room = data.capacity() > used ? data.capacity() - used : chunk;
        room = std::min(room, maximumBytes - used);
        if (waits) waitForInput(fd, name);
        data.resize(used + room);
        ssize_t count = ::read(fd, data.data() + used, room);
        if (count < 0) {
            data.resize(used);
            if (errno == EINTR || (waits && errno == EAGAIN)) continue;
            throwFileError("cannot read file", name, errno);
        }
        data.resize(used + static_cast<std::size_t>(count));
        if (count == 0) break;
    }
    return data;
}

int openForWritingAsItIs(const std::filesystem::path& path) {
    int fd = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0 && errno == ENXIO) {
        throw std::filesystem::filesystem_error(
            "cannot write file", path, std::error_code(static_cast<int>(FileError::noReader), fileErrorCategory()));
    }
    if (fd < 0) throwFileError("cannot write file", path, errno);
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    return fd;
}

// What the target finally names, links followed: /dev/stdout is a link.
bool isDeviceOrPipe(const std::filesystem::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return false;
    return S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode) || S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode);
}

void writeIntoDeviceOrPipe(const Data& data, const std::filesystem::path& path) {
    FileDescriptor file(openForWritingAsItIs(path));
    writeAll(file.get(), data, path);
    closeChecked(file, path);
}

// An empty regular file that another process made for us and may be holding
// open; not a link (which the caller does not follow), not an earlier content.
bool isEmptyRegularFile(const struct stat& status) { return S_ISREG(status.st_mode) && status.st_size == 0; }

void lockExclusively(int fd, const std::filesystem::path& path) {
    while (::flock(fd, LOCK_EX) != 0) {
        if (errno != EINTR) throwFileError("cannot lock file", path, errno);
    }
}

class FileErrorCategory final : public std::error_category {
public:
    const char* name() const noexcept override { return "vantel.file"; }
    std::string message(int code) const override {
        switch (static_cast<FileError>(code)) {
            case FileError::nothingArrived:
                return "nothing arrived within " + std::to_string(quietInputSeconds) + " seconds";
            case FileError::noReader: return "no one is reading from it";
        }
        return "unknown file error";
    }
};

}  // namespace

const std::error_category& fileErrorCategory() {
    static const FileErrorCategory category;
    return category;
}

std::string fileErrorReason(const std::filesystem::filesystem_error& error) {
    return error.code() ? error.code().message() : error.what();
}

Data readData(const URL& url) { return readData(url.path()); }

Data readData(const std::filesystem::path& path) {
    return readData(path, std::numeric_limits<std::size_t>::max());
}

// Opened without blocking: opening a named pipe blocks until someone writes.
Data readData(const std::filesystem::path& path, std::size_t maximumBytes) {
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (file.get() < 0) throwFileError("cannot read file", path, errno);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) throwFileError("cannot read file", path, errno);
    bool waits = !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
    if (!waits) ::fcntl(file.get(), F_SETFL, ::fcntl(file.get(), F_GETFL) & ~O_NONBLOCK);
    return readDescriptor(file.get(), maximumBytes, path, waits);
}

Data readStandardInput(std::size_t maximumBytes) { return readDescriptor(STDIN_FILENO, maximumBytes, "stdin"); }

void writeData(const Data& data, const URL& url) { writeData(data, url.path()); }

void writeData(const Data& data, const std::filesystem::path& path) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (file.get() < 0) throwFileError("cannot write file", path, errno);
    writeAll(file.get(), data, path);
    closeChecked(file, path);
}

void writeDataAtomically(const Data& data, const URL& url) { writeDataAtomically(data, url.path()); }

void writeDataAtomically(const Data& data, const std::filesystem::path& path) {
    if (isDeviceOrPipe(path)) return writeIntoDeviceOrPipe(data, path);
    TemporaryBeside temporary = createTemporaryBeside(path);
    FileDescriptor file(temporary.fd);
    try {
        writeAll(file.get(), data, path);
        closeChecked(file, path);
        if (::rename(temporary.path.c_str(), path.c_str()) != 0) throwFileError("cannot write file", path, errno);
    } catch (...) {
        ::unlink(temporary.path.c_str());
        throw;
    }
}

void writeDataInPlaceOrAtomically(const Data& data, const std::filesystem::path& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0 || !isEmptyRegularFile(status)) return writeDataAtomically(data, path);
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC));
    if (file.get() < 0) return writeDataAtomically(data, path);
    lockExclusively(file.get(), path);
    // Another run may have filled it while this one waited for the lock: then
    // its content is an earlier one to keep until the new one is whole.
    if (::fstat(file.get(), &status) != 0 || !isEmptyRegularFile(status)) {
        closeChecked(file, path);
        return writeDataAtomically(data, path);
    }
    // Not reserved with posix_fallocate first: on ext4 that made each
    // thumbnail cost 4 ms instead of 0.1 ms, and cutting the file back to
    // empty on failure leaves the same as failing before the first byte.
    CleanupOnSignal emptiedOnSignal = CleanupOnSignal::emptying(file.get());
    try {
        writeAll(file.get(), data, path);
    } catch (...) {
        (void)!::ftruncate(file.get(), 0);
        throw;
    }
    emptiedOnSignal.release();  // before the descriptor's number can be reused
    try {
        closeChecked(file, path);
    } catch (...) {
        (void)!::truncate(path.c_str(), 0);
        throw;
    }
}

bool writeToStandardOutput(const Data& data) {
    try {
        writeAll(STDOUT_FILENO, data, "stdout");
    } catch (const std::filesystem::filesystem_error& error) {
        if (error.code() == std::errc::broken_pipe) return false;
        throw;
    }
    return true;
}

}  // namespace vantel
