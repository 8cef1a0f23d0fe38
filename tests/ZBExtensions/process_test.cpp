#include <ZBExtensions/Process.hpp>

#include <Platform/FileIO.hpp>

#include <TestSupport.hpp>
#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <future>
#include <iterator>
#include <thread>
#include <unistd.h>

using namespace vantel;
using vantel::testing::thrownBy;

namespace {

std::size_t threadCount() {
    auto threads = std::filesystem::directory_iterator("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(threads), end(threads)));
}

std::shared_ptr<Task> shell(const std::string& script) {
    auto task = std::make_shared<Task>();
    task->launchPath = "/bin/sh";
    task->arguments = std::vector<std::string>{"-c", script};
    return task;
}

}  // namespace

TEST(ProcessTest, OutputOfASuccessfulRun) {
    ProcessOutput output = run(shell("echo hi; echo ignored >&2"), false);
    EXPECT_EQ(output.terminationStatus, 0);
    EXPECT_EQ(output.responseString(), "hi\n");
    EXPECT_EQ((ProcessOutput{0, Data{0xff, 0xfe}}.responseString()), std::nullopt);
}

TEST(ProcessTest, FailuresCarryBothStreamsAndSayHowTheChildEnded) {
    auto exited = thrownBy<ProcessError>([] { return run(shell("printf out; printf bad >&2; exit 3"), false); });
    EXPECT_EQ(exited.task->terminationStatus(), 3);
    EXPECT_EQ(exited.stdOutString, "out");
    EXPECT_EQ(exited.failureReason(), "bad");
    EXPECT_EQ(exited.localizedDescription(), "exited normally");
    auto killed = thrownBy<ProcessError>([] { return run(shell("kill -9 $$"), false); });
    EXPECT_EQ(killed.localizedDescription(), "exited with uncaught signal: 9");
    EXPECT_EQ(killed.failureReason(), "");
    EXPECT_THROW(run(shell("true"), URL::fileURL("/nonexistent/folder", true), false), std::system_error);
}

TEST(ProcessTest, StandardInputIsLeftAsConfigured) {
    auto task = shell("tr a-z A-Z");
    task->standardInput = std::make_shared<Pipe>();
    const std::string text = "quiet please";
    ASSERT_EQ(write(task->standardInput->fileHandleForWriting->descriptor(), text.data(), text.size()),
              static_cast<ssize_t>(text.size()));
    task->standardInput->fileHandleForWriting->close();
    EXPECT_EQ(run(task, false).responseString(), "QUIET PLEASE");
    // Closed, a handle holds no descriptor: closing it again must not close another one.
    EXPECT_EQ(task->standardInput->fileHandleForWriting->descriptor(), -1);
}

TEST(ProcessDeathTest, VerboseLinesReachTheOutputBeforeAFatalStop) {
    vantel::testing::TemporaryFolder folder;
    const std::string captured = (folder / "stdout.txt").string();
    EXPECT_DEATH(
        {
            if (std::freopen(captured.c_str(), "w", stdout) == nullptr) std::abort();
            run(std::make_shared<Task>(), std::nullopt, true);
        },
        "without a launch path");
    Data written = readData(std::filesystem::path(captured));
    EXPECT_EQ(std::string(written.begin(), written.end()), "Working path not set\n");
    auto withoutArguments = std::make_shared<Task>();
    withoutArguments->launchPath = "/bin/true";
    EXPECT_DEATH(run(withoutArguments, true), "without a launch path or arguments");
}

TEST(ProcessTest, VerboseLinesAndTheWorkingDirectory) {
    auto task = shell("pwd");
    task->currentDirectoryURL = URL::fileURL("/tmp", true);
    ::testing::internal::CaptureStdout();
    ProcessOutput output = run(task, std::nullopt, true);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Working path not set\n/bin/sh -c pwd\n");
    EXPECT_EQ(task->currentDirectoryURL, std::nullopt) << "an absent directory clears the one set before";
    char here[4096];
    ASSERT_NE(getcwd(here, sizeof here), nullptr);
    EXPECT_EQ(output.responseString(), std::string(here) + "\n");

    ::testing::internal::CaptureStdout();
    output = run(task, URL::fileURL("/", true), true);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "/\n/bin/sh -c pwd\n");
    EXPECT_EQ(output.responseString(), "/\n");

    auto bare = std::make_shared<Task>();
    bare->launchPath = "/bin/true";
    bare->arguments = std::vector<std::string>{};
    ::testing::internal::CaptureStdout();
    run(bare, true);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "/bin/true \n");
}

TEST(ProcessTest, TerminalTitlesFromAWatchedHandle) {
    EXPECT_EQ(terminalTitle("plain \033]0;build\007 more \033]2;second\007"), "build");
    EXPECT_EQ(terminalTitle("no title here"), std::nullopt);
    // The search covers as many UTF-16 units as there are characters: with a
    // character outside the basic plane in front, the last unit is not searched.
    EXPECT_EQ(terminalTitle("\xF0\x9F\x98\x80\033]0;x\007"), std::nullopt);

    // The handler keeps its own count across chunks, so each call must reach
    // the handler itself, not a fresh copy of it.
    Pipe pipe;
    std::promise<std::string> first, second;
    auto firstFound = first.get_future(), secondFound = second.get_future();
    readTitle(pipe.fileHandleForReading, [&first, &second, calls = 0](const std::string& title) mutable {
        if (++calls == 1) first.set_value(title);
        else if (calls == 2) second.set_value(title);
    });
    auto send = [&pipe](const std::string& chunk) {
        ASSERT_EQ(write(pipe.fileHandleForWriting->descriptor(), chunk.data(), chunk.size()),
                  static_cast<ssize_t>(chunk.size()));
    };
    send("compiling\n\033]0;build\007done");
    ASSERT_EQ(firstFound.wait_for(std::chrono::seconds(5)), std::future_status::ready);
    EXPECT_EQ(firstFound.get(), "build");
    send("\033]0;link\007");
    ASSERT_EQ(secondFound.wait_for(std::chrono::seconds(5)), std::future_status::ready);
    EXPECT_EQ(secondFound.get(), "link");

    // Watched twice, and each chunk re-arms it once per observer: still one
    // reader. Two would race for the chunks, and every chunk would add one.
    static std::atomic<int> heard{0};
    readTitle(pipe.fileHandleForReading, [](const std::string&) { ++heard; });
    const std::size_t threadsBefore = threadCount();
    for (int chunk = 1; chunk <= 10; ++chunk) {
        send("\033]0;again\007");
        auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (heard < chunk && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
        ASSERT_EQ(heard.load(), chunk);
    }
    EXPECT_LE(threadCount(), threadsBefore + 2);
    pipe.fileHandleForWriting->close();  // ends the background reader
}

TEST(ProcessDeathTest, TitlesAlreadyWaitingInThePipeAreReported) {
    // The observer must be in place before the reader posts its first chunk:
    // a chunk posted to no one is gone. The race is closest on the first
    // call in a fresh process, so each try is a process of its own.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto reportsTheWaitingTitle = [] {
        Pipe pipe;
        const std::string chunk = "\033]0;waiting\007";
        auto written = write(pipe.fileHandleForWriting->descriptor(), chunk.data(), chunk.size());
        if (written != static_cast<ssize_t>(chunk.size())) _exit(2);
        pipe.fileHandleForWriting->close();
        std::promise<void> heard;
        readTitle(pipe.fileHandleForReading, [&heard](const std::string&) { heard.set_value(); });
        _exit(heard.get_future().wait_for(std::chrono::seconds(2)) == std::future_status::ready ? 0 : 1);
    };
    for (int attempt = 0; attempt < 20; ++attempt) {
        EXPECT_EXIT(reportsTheWaitingTitle(), ::testing::ExitedWithCode(0), "") << "attempt " << attempt;
    }
}
