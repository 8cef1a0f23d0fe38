#include <Graphics2/Size.hpp>
#include <Graphics2/SketchFiles.hpp>

#include "RecordingContext.hpp"
#include "TestSupport.hpp"

#include <gtest/gtest.h>

#include <unistd.h>

#include <fstream>
#include <regex>

namespace fs = std::filesystem;
using vantel::testing::TemporaryFolder;

namespace {

void touch(const fs::path& file) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "";
}

}  // namespace

TEST(SketchFilesTest, Sha1IsTheFipsDigestInLowerCaseHex) {
    EXPECT_EQ(vantel::sha1("abc"), "a9993e364706816aba3e25717850c26c9cd0d89d");
    EXPECT_EQ(vantel::sha1(""), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
}

TEST(SketchFilesTest, HashedFileNameIsTheDateAndAHashOfProcessAndDate) {
    std::string name = vantel::hashedFileName(vantel::testing::PageSketch(vantel::Size()), "yyyy-MM-dd");
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(name, parts, std::regex(R"((\d{4}-\d{2}-\d{2})-([0-9a-f]{8}))"))) << name;
    std::string date = parts[1];
    EXPECT_EQ(parts[2], vantel::sha1(std::to_string(getpid()) + "-" + date).substr(0, 8));
    EXPECT_TRUE(std::regex_match(vantel::hashedFileName(vantel::testing::PageSketch(vantel::Size()), "'sketch' HH"),
                                 std::regex(R"(sketch \d{2}-[0-9a-f]{8})")));
}

TEST(SketchFilesTest, RootFolderHoldsTheManifestDirectly) {
    TemporaryFolder folder;
    touch(folder / "nested" / "Package.manifest");
    EXPECT_FALSE(vantel::isRootFolder(folder.path()));
    EXPECT_TRUE(vantel::isRootFolder(folder / "nested"));
    EXPECT_FALSE(vantel::isRootFolder(folder / "missing"));
    fs::create_directory(folder / "Package.manifest");  // any kind of entry counts
    EXPECT_TRUE(vantel::isRootFolder(folder.path()));
}

TEST(SketchFilesTest, OutputFolderIsBesideTheNearestManifestAbove) {
    TemporaryFolder folder;
    touch(folder / "project" / "Package.manifest");
    touch(folder / "project" / "Sources" / "Art" / "Sketch.cpp");
    EXPECT_EQ(vantel::outputFolder((folder / "project" / "Sources" / "Art" / "Sketch.cpp").string()),
              folder / "project" / "Output");
    EXPECT_EQ(vantel::outputFolder((folder / "project" / "main.cpp").string()), folder / "project" / "Output");
}

TEST(SketchFilesTest, OutputFolderStopsAtTheFileSystemRoot) {
    TemporaryFolder folder;
    ASSERT_FALSE(vantel::isRootFolder("/")) << "this machine has a manifest at /";
    EXPECT_EQ(vantel::outputFolder((folder / "a" / "b" / "file.cpp").string()), fs::path("/Output"));
}
