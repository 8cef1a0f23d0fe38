#include <Platform/FileIO.hpp>
#include <Platform/TemporaryFiles.hpp>

#include <TestSupport.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <csignal>

using namespace vantel;
using vantel::testing::TemporaryFolder;

TEST(TemporaryFilesDeathTest, ASignalRemovesWhatIsHeldEmptiesWhatIsFilledAndKeepsTheRest) {
    TemporaryFolder folder;
    writeData(Data{'o', 'l', 'd'}, folder / "kept");
    writeData(Data{'h', 'a', 'l', 'f'}, folder / "filled");
    EXPECT_EXIT(
        {
            std::signal(SIGTERM, SIG_DFL);  // whatever the test runner was started with
            installSignalCleanup();
            // Released first, so that it held the first slot of the table.
            CleanupOnSignal released;
            ::close(createRemovedOnSignal(folder / "released", O_WRONLY, 0600, released));
            released.release();
            CleanupOnSignal made;
            int fd = createRemovedOnSignal(folder / "made", O_WRONLY, 0600, made);
            int filled = ::open((folder / "filled").c_str(), O_WRONLY);
            CleanupOnSignal emptied = CleanupOnSignal::emptying(filled);
            if (fd >= 0) std::raise(SIGTERM);
        },
        ::testing::ExitedWithCode(128 + SIGTERM), "");
    EXPECT_FALSE(std::filesystem::exists(folder / "made"));
    EXPECT_TRUE(std::filesystem::exists(folder / "released"));
    EXPECT_EQ(std::filesystem::file_size(folder / "filled"), 0u);
    EXPECT_EQ(readData(folder / "kept"), (Data{'o', 'l', 'd'}));
}
