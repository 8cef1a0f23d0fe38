#include <Graphics2/SVGAttribute.hpp>

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace vantel;

TEST(SVGAttributeTest, HasEveryCaseWithAUniqueRawValue) {
    std::set<std::string_view> names;
    for (auto attribute : allSVGAttributes()) {
        names.insert(rawValue(attribute));
        EXPECT_EQ(svgAttribute(rawValue(attribute)), attribute);
    }
    EXPECT_EQ(allSVGAttributes().size(), 258u);
    EXPECT_EQ(names.size(), 258u);
    EXPECT_EQ(rawValue(SVGAttribute::accentHeight), "accent-height");
    EXPECT_EQ(rawValue(SVGAttribute::zoomAndPan), "zoomAndPan");
    EXPECT_EQ(rawValue(SVGAttribute::class_), "class");
    EXPECT_EQ(rawValue(SVGAttribute::viewBox), "viewBox");
}

TEST(SVGAttributeTest, HyphenatesExactlyThePresentationAttributes) {
    const std::set<std::string> hyphenated{
        "accent-height", "alignment-baseline", "arabic-form", "baseline-shift",
        "cap-height", "clip-path", "clip-rule", "color-interpolation",
        "color-interpolation-filters", "color-profile", "color-rendering", "dominant-baseline",
        "enable-background", "fill-opacity", "fill-rule", "flood-color",
        "flood-opacity", "font-family", "font-size", "font-size-adjust",
        "font-stretch", "font-style", "font-variant", "font-weight",
        "glyph-name", "glyph-orientation-horizontal", "glyph-orientation-vertical", "horiz-adv-x",
        "horiz-origin-x", "image-rendering", "letter-spacing", "lighting-color",
        "marker-end", "marker-mid", "marker-start", "overline-position",
        "overline-thickness", "paint-order", "pointer-events", "rendering-intent",
        "shape-rendering", "stop-color", "stop-opacity", "strikethrough-position",
        "strikethrough-thickness", "stroke-dasharray", "stroke-dashoffset", "stroke-linecap",
        "stroke-linejoin", "stroke-miterlimit", "stroke-opacity", "stroke-width",
        "text-anchor", "text-decoration", "text-rendering", "transform-origin",
        "underline-position", "underline-thickness", "unicode-bidi", "unicode-range",
        "units-per-em", "v-alphabetic", "v-hanging", "v-ideographic",
        "v-mathematical", "vector-effect", "vert-adv-y", "vert-origin-x",
        "vert-origin-y", "word-spacing", "writing-mode", "x-height",
    };
    ASSERT_EQ(hyphenated.size(), 72u);
    std::size_t hyphenatedCount = 0;
    for (auto attribute : allSVGAttributes()) {
        std::string_view name = rawValue(attribute);
        if (name.find('-') != std::string_view::npos && name != "panose-1") {
            ++hyphenatedCount;
            EXPECT_TRUE(hyphenated.count(std::string(name))) << name;
        }
    }
    EXPECT_EQ(hyphenatedCount, 72u);
    EXPECT_EQ(svgAttribute("stroke-width"), SVGAttribute::strokeWidth);
    EXPECT_EQ(svgAttribute("strokeWidth"), std::nullopt);
    EXPECT_EQ(svgAttribute("v-alphabetic"), SVGAttribute::vAlphabetic);
}

TEST(SVGAttributeTest, PrefixedAndNumberedNamesAreExceptions) {
    EXPECT_EQ(rawValue(SVGAttribute::panose1), "panose-1");
    EXPECT_EQ(rawValue(SVGAttribute::xlinkActuate), "xlink:actuate");
    EXPECT_EQ(rawValue(SVGAttribute::xlinkArcrole), "xlink:arcrole");
    EXPECT_EQ(rawValue(SVGAttribute::xlinkHref), "xlink:href");
    EXPECT_EQ(rawValue(SVGAttribute::xlinkRole), "xlink:role");
    EXPECT_EQ(rawValue(SVGAttribute::xlinkShow), "xlink:show");
    EXPECT_EQ(rawValue(SVGAttribute::xlinkTitle), "xlink:title");
    EXPECT_EQ(rawValue(SVGAttribute::xlinkType), "xlink:type");
    EXPECT_EQ(rawValue(SVGAttribute::xmlBase), "xml:base");
    EXPECT_EQ(rawValue(SVGAttribute::xmlLang), "xml:lang");
    EXPECT_EQ(rawValue(SVGAttribute::xmlSpace), "xml:space");
    EXPECT_EQ(svgAttribute("xlinkHref"), std::nullopt);
}
