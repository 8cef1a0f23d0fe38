#include "NewDocument.hpp"

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
