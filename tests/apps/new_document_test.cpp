#include "NewDocument.hpp"

#include <OverlayGenerator/DocumentCheck.hpp>
#include <Platform/PropertyList.hpp>
#include <gtest/gtest.h>

#include <string>

using namespace vantel;
using namespace vantel::cli;

TEST(NewDocumentTest, EveryPresetReadsBackEqualFromBothPropertyListForms) {
    for (const std::string& name : presetNames()) {
        for (bool binary : {false, true}) {
            const OverlayGen document = newDocument(presetNamed(name).value());
            const Data bytes = encodeNewDocument(document, binary);
            const std::string start(bytes.begin(), bytes.begin() + 8);
            EXPECT_EQ(start == "bplist00", binary);
            EXPECT_EQ(start.starts_with("<?xml"), !binary);
            EXPECT_EQ(PropertyListDecoder().decode<OverlayGen>(bytes), document);
        }
    }
}

TEST(NewDocumentTest, PresetsSitOnABlackFullHDCanvasAndCanBeDrawn) {
    const OverlayGen single = newDocument(Preset::defaultGuide);
    const OverlayGen test = newDocument(Preset::test);
    for (const OverlayGen* document : {&single, &test}) {
        EXPECT_EQ(document->size(), Size(1920, 1080, 40));
        EXPECT_EQ(document->backgroundColor(), Color::black());
        EXPECT_TRUE(checkDocument(*document).empty());
    }
    EXPECT_EQ(single.description(), "overlay_1x1");
    EXPECT_EQ(test.description(), "overlay_16x9_9x16");
    EXPECT_NE(newDocument(Preset::test).ratios()[0].id, test.ratios()[0].id);

    EXPECT_EQ(presetNamed("test"), Preset::test);
    EXPECT_EQ(presetNamed("default"), Preset::defaultGuide);
    EXPECT_EQ(presetNamed("Default"), std::nullopt);
}
