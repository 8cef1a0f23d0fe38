#include "CSSColor.hpp"

#include <Graphics2/ColorText.hpp>
#include <gtest/gtest.h>

#include <string>

using namespace vantel;
using namespace vantel::cli;

namespace {

// "#RRGGBBAA" of what the text reads as, or "none".
std::string read(const std::string& text) {
    std::optional<Color> color = cssColor(text);
    return color ? ColorFormatStyle::hexAlpha().formatted(*color) : "none";
}

}  // namespace

TEST(CSSColorTest, ReadsEveryFormOnTheCSSScales) {
    EXPECT_EQ(read("Navy"), "#000080FF");
    EXPECT_EQ(read("\t LightSlateGrey \n"), "#778899FF");
    EXPECT_EQ(read("seashell"), "#FFF5EEFF");  // CSS's value, not the library's
    EXPECT_EQ(read("transparent"), "#00000000");
    EXPECT_EQ(read("#f80"), "#FF8800FF");
    EXPECT_EQ(read("#F808"), "#FF880088");
    EXPECT_EQ(read("#ff8000"), "#FF8000FF");
    EXPECT_EQ(read("#FF800040"), "#FF800040");
    EXPECT_EQ(read("rgb(255,128,0)"), "#FF8000FF");
    EXPECT_EQ(read("RGBA( 255 , 128 , 0 , 0.5 )"), "#FF800080");
    EXPECT_EQ(read("rgb(100%, 50%, 0%)"), "#FF8000FF");
    EXPECT_EQ(read("rgb(255 128 0 / 25%)"), "#FF800040");
    EXPECT_EQ(read("rgba(18,18,24,1e-0)"), "#121218FF");
    EXPECT_EQ(read("rgb(300,-5,+1.5e2)"), "#FF0096FF");  // clamped, as CSS does
    EXPECT_EQ(read("hsl(30,100%,50%)"), "#FF8000FF");
    EXPECT_EQ(read("hsla(-240, 100%, 25%, 0.5)"), "#00800080");
    EXPECT_EQ(read("hsl(0.5turn 100% 50%)"), "#00FFFFFF");
}

TEST(CSSColorTest, RefusesWhatTheLibraryWouldTurnIntoBlack) {
    for (const char* text : {"", "  ", "clear", "nosuchcolour", "#GGGGGG", "#FF800", "#FF8000800", "#", "# f80",
                             "rgb(.)", "rgba(,,,)", "rgb(1.2.3)", "rgb()", "rgb(1,2)", "rgb(1,2,3,4,5)",
                             "rgb(1,,2,3)", "rgb(1 2 3 4)", "rgb(1, 2 3)", "rgb(1 2 3 /)", "rgb (1,2,3)",
                             "rgb(1,2,3", "rgb(1,2,3)x", "rgb(inf,0,0)", "rgb(nan,0,0)", "rgb(0x10,0,0)",
                             "rgb(1e999,0,0)", "rgb(1.,0,0)", "rgb(10px,0,0)", "rgb(0,0,0,50deg)",
                             "hsl(30,100%)", "hsl(30px,100%,50%)", "cmyk(0,0,0,1)", "navy\nred"}) {
        EXPECT_EQ(read(text), "none") << text;
    }
}
