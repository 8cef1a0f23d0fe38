#include <Platform/FileIO.hpp>

#include <TestSupport.hpp>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
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

}  // namespace

TEST(FileIOLockedTest, WritesIntoTheFileItselfReplacingAllOfItsContent) {
    TemporaryFolder folder;
    auto path = folder / "thumbnail";
    writeDataInPlaceLocked(bytes("first, longer content"), path);
    EXPECT_EQ(text(readData(path)), "first, longer content");

    int held = ::open(path.c_str(), O_RDONLY);  // as a reader that keeps the file open
    writeDataInPlaceLocked(bytes("second"), path);
    EXPECT_EQ(readThrough(held), "second");
    ::close(held);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);

    EXPECT_THROW(writeDataInPlaceLocked(bytes("x"), folder / "missing" / "thumbnail"),
                 std::filesystem::filesystem_error);
}

TEST(FileIOLockedTest, WaitsWhileAnotherWriterHoldsTheLock) {
    TemporaryFolder folder;
    auto path = folder / "thumbnail";
    writeData(bytes("old"), path);
    int other = ::open(path.c_str(), O_WRONLY);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);

    std::atomic<bool> done = false;
    std::thread writer([&] {
        writeDataInPlaceLocked(bytes("new"), path);
        done = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(done);
    EXPECT_EQ(text(readData(path)), "old");
    ::flock(other, LOCK_UN);
    writer.join();
    ::close(other);
    EXPECT_EQ(text(readData(path)), "new");
}
