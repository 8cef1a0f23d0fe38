#include <Graphics2/ColorText.hpp>
#include <Platform/JSON.hpp>

#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <string>

using vantel::Color;
using vantel::ColorFormatStyle;
using vantel::colorFromText;
using vantel::isRecognisedColorText;

TEST(ColorTextTest, HexNeedsALeadingHashWithoutTrimmingBeforeTheTest) {
    EXPECT_EQ(colorFromText("#FF0000"), Color::redColor());
    EXPECT_EQ(colorFromText("#ff000080"), Color(1, 0, 0, 128.0 / 255));
    EXPECT_EQ(colorFromText(" #FF0000"), Color::black());
    EXPECT_EQ(colorFromText("ff0000"), Color::black());
    EXPECT_DEATH(colorFromText("#FFF"), "six");
}

// The numbers are on the 0...1 scale and only clamped: dividing by 255 here
// would change every stored rgb() text.
TEST(ColorTextTest, RgbNumbersAreClampedNotScaled) {
    EXPECT_EQ(colorFromText("rgb(128,64,0)"), Color(1, 1, 0, 1));
    EXPECT_EQ(colorFromText("rgb(255,0,0)"), colorFromText("rgb(1,0,0)"));
    EXPECT_EQ(colorFromText("rgba(0.5,0.5,0.5,0.25)"), Color(0.5, 0.5, 0.5, 0.25));
    EXPECT_EQ(colorFromText("rgb(0.2)"), Color::grey(0.2, 1));
    EXPECT_EQ(colorFromText("rgb(1,,0,0)"), Color::redColor());
    EXPECT_EQ(colorFromText("rgb(1.2.3,0,1,0)"), Color(0, 1, 0, 1));
    // Past a double's range a number reads as infinity or 0; it is not dropped.
    std::string huge(400, '9'), tiny = "0." + std::string(400, '0') + "1";
    EXPECT_EQ(colorFromText("rgb(0," + huge + "," + tiny + ")"), Color(0, 1, 0, 1));
    EXPECT_EQ(colorFromText("rgb()"), Color::black());
    EXPECT_EQ(colorFromText("rgb (1,0,0)"), Color::black());
}

TEST(ColorTextTest, KeywordsAreExactAndOnlyRecognisedTextCounts) {
    EXPECT_EQ(colorFromText("navy"), Color::navy());
    EXPECT_EQ(colorFromText("Navy"), Color::black());
    for (const char* text : {"navy", "#FF800080", "rgba(0.2,0.4,0.6,0.5)", "#ABCDEF\n"}) {
        EXPECT_TRUE(isRecognisedColorText(text)) << text;
    }
    for (const char* text : {"Navy", "#FFF", "  #ABCDEF", "rgb()", "rgb(a)", " navy", ""}) {
        EXPECT_FALSE(isRecognisedColorText(text)) << text;
    }
}

TEST(ColorTextTest, FormatStylesWriteRoundedComponents) {
    Color orange(1, 128.0 / 255, 0, 0.3);
    EXPECT_EQ(ColorFormatStyle::hex().formatted(orange), "#FF8000");
    EXPECT_EQ(ColorFormatStyle::hexAlpha().formatted(orange), "#FF80004D");
    EXPECT_EQ(ColorFormatStyle::rgba().formatted(orange), "rgba(255,128,0,0.3)");
    EXPECT_NE(ColorFormatStyle::hex(), ColorFormatStyle::rgba());
}

namespace {

vantel::Data jsonBytes(std::string_view text) { return vantel::Data(text.begin(), text.end()); }

}  // namespace

TEST(ColorTextTest, FormatStyleIsSavedAsItsCaseOverAnEmptyContainer) {
    using vantel::ColorFormatStyle;
    const vantel::Data saved = vantel::JSONEncoder().encode(ColorFormatStyle::hexAlpha());
    EXPECT_EQ(std::string(saved.begin(), saved.end()), R"({"format":{"hexAlpha":{}}})");
    for (auto style : {ColorFormatStyle::hex(), ColorFormatStyle::hexAlpha(), ColorFormatStyle::rgba()}) {
        EXPECT_EQ(vantel::JSONDecoder().decode<ColorFormatStyle>(vantel::JSONEncoder().encode(style)), style);
    }
}

TEST(ColorTextTest, FormatStyleNeedsExactlyOneKnownCase) {
    using vantel::ColorFormatStyle;
    auto decodingFails = [](std::string_view json) {
        auto decode = [&] { return vantel::JSONDecoder().decode<ColorFormatStyle>(jsonBytes(json)); };
        return vantel::testing::thrownBy<vantel::DecodingError>(decode).context().debugDescription;
    };
    EXPECT_EQ(decodingFails(R"({"format":{"hex":{},"rgba":{}}})"), "Invalid number of keys found, expected one.");
    EXPECT_EQ(decodingFails(R"({"format":{}})"), "Invalid number of keys found, expected one.");
    EXPECT_EQ(decodingFails(R"({"format":{"hsl":{}}})"), "Unknown format \"hsl\"; expected hex, hexAlpha or rgba.");
    // A case holds an empty container, never a value.
    EXPECT_EQ(decodingFails(R"({"format":{"hex":1}})"), "Expected to decode Dictionary but found an integer instead.");
}
