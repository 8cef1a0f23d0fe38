#include <Platform/FileIO.hpp>

#include <TestSupport.hpp>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>

using namespace vantel;
using vantel::testing::TemporaryFolder;

namespace {

Data bytes(const std::string& text) { return Data(text.begin(), text.end()); }
std::string text(const Data& data) { return std::string(data.begin(), data.end()); }

std::string readThrough(int fd) {
    std::string content;
    char buffer[256];
    for (ssize_t count; (count = ::read(fd, buffer, sizeof buffer)) > 0;) content.append(buffer, count);
    return content;
}

std::size_t entryCount(const std::filesystem::path& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

}  // namespace

TEST(FileIOInPlaceTest, FillsAnEmptyFileItsHolderReadsAndReplacesAnythingElse) {
    TemporaryFolder folder;
    auto path = folder / "thumbnail";
    writeData({}, path);
    int holder = ::open(path.c_str(), O_RDONLY);  // as tumblerd keeps the file it made
    writeDataInPlaceOrAtomically(bytes("first"), path);
    EXPECT_EQ(readThrough(holder), "first");
    ::close(holder);

    // An earlier content stays whole for whoever has it open.
    int reader = ::open(path.c_str(), O_RDONLY);
    writeDataInPlaceOrAtomically(bytes("second"), path);
    EXPECT_EQ(readThrough(reader), "first");
    ::close(reader);
    EXPECT_EQ(text(readData(path)), "second");
    EXPECT_EQ(entryCount(folder.path()), 1u);

    // A link is replaced, never written through.
    writeData(bytes("keep"), folder / "other");
    std::filesystem::create_symlink(folder / "other", folder / "link");
    writeDataInPlaceOrAtomically(bytes("new"), folder / "link");
    EXPECT_FALSE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(text(readData(folder / "other")), "keep");

    EXPECT_THROW(writeDataInPlaceOrAtomically(bytes("x"), folder / "missing" / "thumbnail"),
                 std::filesystem::filesystem_error);
}

// A full disk fails the same way, before the first byte (tests/apps covers
// it on a small tmpfs).
TEST(FileIOInPlaceTest, AFileSizeLimitLeavesEveryTargetAsItWas) {
    TemporaryFolder folder;
    writeData({}, folder / "empty");
    writeData(bytes("earlier"), folder / "earlier");
    auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit previous{};
    ::getrlimit(RLIMIT_FSIZE, &previous);
    rlimit small = previous;
    small.rlim_cur = 16;
    ::setrlimit(RLIMIT_FSIZE, &small);
    for (const char* name : {"empty", "earlier", "new"}) {
        SCOPED_TRACE(name);
        try {
            writeDataInPlaceOrAtomically(Data(100, 'x'), folder / name);
            ADD_FAILURE() << "no error past the limit";
        } catch (const std::filesystem::filesystem_error& error) {
            EXPECT_EQ(error.code(), std::errc::file_too_large);
        }
    }
    ::setrlimit(RLIMIT_FSIZE, &previous);
    std::signal(SIGXFSZ, previousHandler);
    EXPECT_EQ(text(readData(folder / "empty")), "");
    EXPECT_EQ(text(readData(folder / "earlier")), "earlier");
    EXPECT_EQ(entryCount(folder.path()), 2u);
}

TEST(FileIOInPlaceTest, WaitsWhileAnotherWriterHoldsTheLock) {
    TemporaryFolder folder;
    auto path = folder / "thumbnail";
    writeData({}, path);
    int other = ::open(path.c_str(), O_WRONLY);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);

    std::atomic<bool> done = false;
    std::thread writer([&] {
        writeDataInPlaceOrAtomically(bytes("new"), path);
        done = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(done);
    EXPECT_EQ(text(readData(path)), "");
    ::flock(other, LOCK_UN);
    writer.join();
    ::close(other);
    EXPECT_EQ(text(readData(path)), "new");
}
