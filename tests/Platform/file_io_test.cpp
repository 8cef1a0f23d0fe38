#include <Platform/FileIO.hpp>

#include "TestSupport.hpp"

#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <functional>
#include <string>
#include <thread>

using namespace vantel;
using vantel::testing::TemporaryFolder;

namespace {

Data bytes(std::string_view text) { return Data(text.begin(), text.end()); }

std::filesystem::filesystem_error fileError(const std::function<void()>& body) {
    return vantel::testing::thrownBy<std::filesystem::filesystem_error>(body);
}

std::size_t entryCount(const std::filesystem::path& folder) {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder)) ++count;
    return count;
}

}  // namespace

TEST(FileIOTest, WritesAndReadsWholeFilesReplacingOldContent) {
    TemporaryFolder folder;
    URL url = URL::fileURL(folder / "data.bin");
    Data large(300'000);
    for (std::size_t i = 0; i < large.size(); ++i) large[i] = static_cast<std::uint8_t>(i * 7);
    writeData(large, url);
    EXPECT_EQ(readData(url), large);
    writeData(bytes("short"), url);
    EXPECT_EQ(readData(url.path()), bytes("short"));
    writeData({}, url);
    EXPECT_TRUE(readData(url).empty());
}

TEST(FileIOTest, FailuresNameThePathAndTheSystemReason) {
    TemporaryFolder folder;
    auto missing = fileError([&] { readData(folder / "missing.plist"); });
    EXPECT_EQ(missing.code(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(missing.path1(), folder / "missing.plist");
    EXPECT_NE(std::string(missing.what()).find("missing.plist"), std::string::npos);

    auto directory = fileError([&] { readData(folder.path()); });
    EXPECT_EQ(directory.code(), std::errc::is_a_directory);

    auto noFolder = fileError([&] { writeData(bytes("x"), URL::fileURL(folder / "absent" / "x")); });
    EXPECT_EQ(noFolder.code(), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(std::filesystem::exists(folder / "absent"));
}

TEST(FileIOTest, AtomicWritesReplaceTheFileAndLeaveNothingElse) {
    TemporaryFolder folder;
    std::filesystem::path target = folder / "thumb.png";
    writeData(bytes("old"), target);
    writeDataAtomically(bytes("new content"), target);
    EXPECT_EQ(readData(target), bytes("new content"));
    EXPECT_EQ(entryCount(folder.path()), 1u);
    EXPECT_THROW(writeDataAtomically(bytes("x"), folder / "absent" / "x"), std::filesystem::filesystem_error);
    EXPECT_EQ(entryCount(folder.path()), 1u);
}

TEST(FileIOTest, BoundedReadsStopAtTheLimitEvenOnEndlessFiles) {
    TemporaryFolder folder;
    std::filesystem::path file = folder / "ten";
    writeData(bytes("0123456789"), file);
    EXPECT_EQ(readData(file, 4), bytes("0123"));
    EXPECT_EQ(readData(file, 10), bytes("0123456789"));
    EXPECT_EQ(readData(file, 1 << 20), bytes("0123456789"));
    EXPECT_TRUE(readData(file, 0).empty());
    // A device that never ends, larger than one read, and a file that is not there.
    EXPECT_EQ(readData("/dev/zero", 300'000), Data(300'000, 0));
    EXPECT_EQ(fileError([&] { readData(folder / "absent", 4); }).code(), std::errc::no_such_file_or_directory);
}

// Named pipes are opened without blocking: one that no one writes to fails
// after quietInputSeconds instead of holding the reader forever.
TEST(FileIOTest, PipesAreReadUntilTheyGoQuietAndWrittenIntoAsTheyAre) {
    TemporaryFolder folder;
    std::filesystem::path pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    auto quiet = fileError([&] { readData(pipe, 100); });
    EXPECT_EQ(quiet.code(), std::error_code(static_cast<int>(FileError::nothingArrived), fileErrorCategory()));
    EXPECT_EQ(fileErrorReason(quiet), "nothing arrived within 3 seconds");

    auto noReader = fileError([&] { writeDataAtomically(bytes("x"), pipe); });
    EXPECT_EQ(fileErrorReason(noReader), "no one is reading from it");

    Data received;
    std::thread reader([&] { received = readData(pipe, 100); });
    while (true) {  // until the reader has the pipe open
        try {
            writeDataAtomically(bytes("through the pipe"), pipe);
            break;
        } catch (const std::filesystem::filesystem_error&) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
    reader.join();
    EXPECT_EQ(received, bytes("through the pipe"));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_EQ(entryCount(folder.path()), 1u);
}
