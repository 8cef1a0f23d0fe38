#include <ZBExtensions/UserDefaults.hpp>

#include <TestSupport.hpp>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace vantel {
namespace {

TEST(UserDefaultsTest, RemembersExistingLocationsAcrossInstances) {
    testing::TemporaryFolder folder;
    std::ofstream(folder / "doc.aspectratio") << "x";
    URL document = URL::fileURL(folder / "doc.aspectratio");
    URL outputs = URL::fileURL(folder.path(), true);
    std::filesystem::path store = folder / "config" / "vantel" / "defaults.plist";

    UserDefaults(store).setSecureURL(document, "lastDocument");
    UserDefaults(store).setSecureURL(outputs, "outputFolder");
    UserDefaults reopened(store);
    EXPECT_EQ(reopened.secureURL("lastDocument"), document);
    EXPECT_EQ(reopened.secureURL("outputFolder"), outputs);
    EXPECT_EQ(reopened.secureURL("never set"), std::nullopt);

    std::filesystem::remove(folder / "doc.aspectratio");
    EXPECT_EQ(reopened.secureURL("lastDocument"), std::nullopt) << "a location that no longer resolves is absent";
}

TEST(UserDefaultsTest, AbsentOrUnbookmarkableURLsRemoveTheKey) {
    testing::TemporaryFolder folder;
    UserDefaults defaults(folder / "defaults.plist");
    URL here = URL::fileURL(folder.path(), true);
    defaults.setSecureURL(here, "a");
    defaults.setSecureURL(here, "b");
    defaults.setSecureURL(std::nullopt, "a");
    defaults.setSecureURL(URL::fileURL(folder / "missing"), "b");
    EXPECT_EQ(defaults.secureURL("a"), std::nullopt);
    EXPECT_EQ(defaults.secureURL("b"), std::nullopt);
    defaults.setSecureURL(URL::fromString("https://example.com/x"), "c");
    EXPECT_EQ(defaults.secureURL("c"), std::nullopt);
}

TEST(UserDefaultsTest, BrokenOrUnwritableStoresReadAsEmpty) {
    testing::TemporaryFolder folder;
    std::ofstream(folder / "corrupt.plist") << "not a property list";
    UserDefaults corrupt(folder / "corrupt.plist");
    EXPECT_EQ(corrupt.secureURL("a"), std::nullopt);
    corrupt.setSecureURL(URL::fileURL(folder.path(), true), "a");
    EXPECT_EQ(corrupt.secureURL("a"), URL::fileURL(folder.path(), true)) << "a corrupt store is replaced";

    std::ofstream(folder / "blocker") << "a file where a folder should be";
    UserDefaults unwritable(folder / "blocker" / "defaults.plist");
    unwritable.setSecureURL(URL::fileURL(folder.path(), true), "a");  // swallowed
    EXPECT_EQ(unwritable.secureURL("a"), std::nullopt);
}

TEST(UserDefaultsTest, TheStandardStoreLivesUnderTheConfigurationFolder) {
    std::string savedConfig = std::getenv("XDG_CONFIG_HOME") ? std::getenv("XDG_CONFIG_HOME") : "";
    std::string savedHome = std::getenv("HOME") ? std::getenv("HOME") : "";
    setenv("XDG_CONFIG_HOME", "/somewhere/config", 1);
    EXPECT_EQ(UserDefaults::standard().file(), "/somewhere/config/vantel/defaults.plist");
    setenv("XDG_CONFIG_HOME", "relative", 1);
    setenv("HOME", "/home/someone", 1);
    EXPECT_EQ(UserDefaults::standard().file(), "/home/someone/.config/vantel/defaults.plist");
    unsetenv("HOME");
    EXPECT_THROW(UserDefaults::standard(), std::runtime_error) << "no store relative to the current folder";
    setenv("XDG_CONFIG_HOME", savedConfig.c_str(), 1);
    setenv("HOME", savedHome.c_str(), 1);
}

TEST(UserDefaultsTest, ALinkedStoreIsWrittenThroughItsLink) {
    testing::TemporaryFolder folder;
    std::filesystem::create_directory(folder / "dotfiles");
    std::filesystem::create_symlink("dotfiles/vantel.plist", folder / "defaults.plist");
    UserDefaults(folder / "defaults.plist").setSecureURL(URL::fileURL(folder.path(), true), "a");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "defaults.plist"));
    EXPECT_EQ(UserDefaults(folder / "dotfiles" / "vantel.plist").secureURL("a"), URL::fileURL(folder.path(), true));
}

// Four processes and four threads write 20 keys each into one store at once.
TEST(UserDefaultsTest, ConcurrentWritersKeepEveryKey) {
    testing::TemporaryFolder folder;
    UserDefaults defaults(folder / "defaults.plist");
    URL here = URL::fileURL(folder.path(), true);
    auto writeKeys = [&](int writer) {
        for (int key = 0; key < 20; ++key) defaults.setSecureURL(here, std::to_string(writer * 20 + key));
    };
    std::vector<pid_t> children;
    for (int writer = 0; writer < 4; ++writer) {
        if ((children.emplace_back(fork())) == 0) {
            writeKeys(writer);
            _exit(0);
        }
    }
    std::vector<std::thread> threads;
    for (int writer = 4; writer < 8; ++writer) threads.emplace_back(writeKeys, writer);
    for (std::thread& thread : threads) thread.join();
    for (pid_t child : children) waitpid(child, nullptr, 0);
    int kept = 0;
    for (int key = 0; key < 160; ++key) kept += defaults.secureURL(std::to_string(key)).has_value();
    EXPECT_EQ(kept, 160);
}

}  // namespace
}  // namespace vantel
