#include <Platform/FileIO.hpp>

#include <Platform/UUID.hpp>

#include <fcntl.h>
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
// the permissions any new file gets.
int createTemporaryBeside(const std::filesystem::path& target, std::filesystem::path& temporary) {
    std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
    for (int attempt = 0; attempt < 16; ++attempt) {
        temporary = folder / ("." + target.filename().string() + "." + UUID::random().uuidString());
        int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST) return fd;
    }
    return -1;
}

// At most maximumBytes from the descriptor, to its end.
Data readDescriptor(int fd, std::size_t maximumBytes, const std::filesystem::path& name) {
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
        data.resize(used + room);
        ssize_t count = ::read(fd, data.data() + used, room);
        if (count < 0) {
            data.resize(used);
            if (errno == EINTR) continue;
            throwFileError("cannot read file", name, errno);
        }
        data.resize(used + static_cast<std::size_t>(count));
        if (count == 0) break;
    }
    return data;
}

}  // namespace

std::string fileErrorReason(const std::filesystem::filesystem_error& error) {
    return error.code() ? error.code().message() : error.what();
}

Data readData(const URL& url) { return readData(url.path()); }

Data readData(const std::filesystem::path& path) {
    return readData(path, std::numeric_limits<std::size_t>::max());
}

Data readData(const std::filesystem::path& path, std::size_t maximumBytes) {
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.get() < 0) throwFileError("cannot read file", path, errno);
    return readDescriptor(file.get(), maximumBytes, path);
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
    std::filesystem::path temporary;
    FileDescriptor file(createTemporaryBeside(path, temporary));
    if (file.get() < 0) throwFileError("cannot write file", path, errno);
    try {
        writeAll(file.get(), data, path);
        closeChecked(file, path);
        if (::rename(temporary.c_str(), path.c_str()) != 0) throwFileError("cannot write file", path, errno);
    } catch (...) {
        ::unlink(temporary.c_str());
        throw;
    }
}

void writeDataInPlaceLocked(const Data& data, const std::filesystem::path& path) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
    if (file.get() < 0) throwFileError("cannot write file", path, errno);
    while (::flock(file.get(), LOCK_EX) != 0) {
        if (errno != EINTR) throwFileError("cannot lock file", path, errno);
    }
    // Overwrite, then cut what is left of a longer old content, all under the
    // lock (opening with O_TRUNC would cut a file another writer is filling).
    // Truncating to zero first would also be slower: ext4 then flushes the
    // file to disk when it is closed.
    try {
        writeAll(file.get(), data, path);
        struct stat status {};
        if (::fstat(file.get(), &status) != 0) throwFileError("cannot write file", path, errno);
        if (static_cast<std::uintmax_t>(status.st_size) > data.size() &&
            ::ftruncate(file.get(), static_cast<off_t>(data.size())) != 0) {
            throwFileError("cannot write file", path, errno);
        }
    } catch (...) {
        (void)!::ftruncate(file.get(), 0);
        throw;
    }
    ::flock(file.get(), LOCK_UN);
    closeChecked(file, path);
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
