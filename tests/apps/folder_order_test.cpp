// The order vantel-preview walks a folder in, checked without a window.

#include "FolderOrder.hpp"

#include <TestSupport.hpp>

#include <gtest/gtest.h>

#include <fstream>

using namespace vantel::preview;
namespace fs = std::filesystem;

TEST(FolderOrderTest, DocumentsAndListsWalkInNaturalOrderWithCaseTiesFixed) {
    vantel::testing::TemporaryFolder folder;
    for (const char* name : {"shot10.aspectratio", "shot2.aspectratio", "shot1.aspectratio", "Shot1.aspectratio",
                             "notes.txt", "shot2.FDL", "shot3.fdl", "shot.json"}) {
        std::ofstream(folder / name) << "x";
    }
    fs::create_directory(folder / "dir.aspectratio");
    std::vector<std::string> names;
    for (const fs::path& path : documentsInFolder(folder.path())) names.push_back(path.filename().string());
    EXPECT_EQ(names, (std::vector<std::string>{"Shot1.aspectratio", "shot1.aspectratio", "shot2.aspectratio",
                                               "shot2.FDL", "shot3.fdl", "shot10.aspectratio"}));
    EXPECT_EQ(neighbourDocument(folder / "shot3.fdl", 1).filename(), "shot10.aspectratio");
    EXPECT_EQ(neighbourDocument(folder / "shot10.aspectratio", 1).filename(), "Shot1.aspectratio");
    EXPECT_EQ(neighbourDocument(folder / "Shot1.aspectratio", -1).filename(), "shot10.aspectratio");
}
