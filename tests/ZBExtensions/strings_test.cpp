#include <ZBExtensions/RegularExpressionMatching.hpp>
#include <ZBExtensions/Strings.hpp>

#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <type_traits>

using namespace vantel;
using vantel::testing::thrownBy;

TEST(StringsTest, CamelCapsSplitsBeforeCapitalsButKeepsRunsOfThem) {
    EXPECT_EQ(camelCaps(""), "");
    EXPECT_EQ(camelCaps("a"), "a");
    EXPECT_EQ(camelCaps("helloWorld"), "hello World");
    EXPECT_EQ(camelCaps("myURLValue"), "my URLValue");
    EXPECT_EQ(camelCaps("AB"), "A B");
    EXPECT_EQ(camelCaps("ABCdef"), "A BCdef");
    EXPECT_EQ(camelCaps("take2Shots"), "take2 Shots");
    EXPECT_EQ(camelCaps("\u00E9t\u00E9\u00C9t\u00E9"), "\u00E9t\u00E9 \u00C9t\u00E9");
    // A capital with a combining accent is one character: the next capital stays with it.
    EXPECT_EQ(camelCaps("xE\u0301T"), "x E\u0301T");
}

TEST(StringsTest, PaddingRepeatsThePadPerMissingDigitAndNeverShortens) {
    EXPECT_EQ(paddingNumbers("frame7_v12", 3, "0"), "frame007_v012");
    EXPECT_EQ(paddingNumbers("1 22 333", 2, "0"), "01 22 333");
    EXPECT_EQ(paddingNumbers("7", 3, "ab"), "abab7");
    EXPECT_EQ(paddingNumbers("no digits", 3, "0"), "no digits");
    std::string text = "\u00E9 4";
    padNumbers(text, 2, "0");
    EXPECT_EQ(text, "\u00E9 04");

    // Each run is found once, not from the start again: this takes minutes
    // when every run rescans the text before it.
    std::string many;
    for (int i = 0; i < 100000; ++i) many += "\u00E9" + std::to_string(i % 10) + " ";
    std::string padded = paddingNumbers(many, 3, "0");
    EXPECT_EQ(padded.size(), many.size() + 200000);
    EXPECT_EQ(padded.substr(padded.size() - 12), "\u00E9008 \u00E9009 ");
}

TEST(StringsTest, CounterIsBumpedOrStarted) {
    EXPECT_EQ(incrementingCounter("shot"), "shot-1");
    EXPECT_EQ(incrementingCounter("shot-1"), "shot-2");
    EXPECT_EQ(incrementingCounter("shot-09"), "shot-10");
    EXPECT_EQ(incrementingCounter("shot-009", 1, 1, "%03d"), "shot-010");
    EXPECT_EQ(incrementingCounter("v-abc"), "v-abc-1");
    EXPECT_EQ(incrementingCounter("take", 5, 10), "take-5");
    EXPECT_EQ(incrementingCounter("take_v7", 1, 10, "%ld", "_v"), "take_v17");
    EXPECT_EQ(incrementingCounter("n-9", 1, 1, "%%%x%%"), "n-%a%");
    EXPECT_EQ(incrementingCounter("n-9", 1, 1, "plain"), "n-plain");
    EXPECT_EQ(incrementingCounter("n", 1, 1, "100%%"), "n-100%");
    // The delimiter is syntax: "." matches any character, and "t09" is no number.
    EXPECT_EQ(incrementingCounter("shot09", 1, 1, "%d", "."), "shot09.1");
    std::string name = "a-1";
    incrementCounter(name, 1, -3);
    EXPECT_EQ(name, "a--2");
}

TEST(StringsDeathTest, CounterFormatsOtherThanOneIntegerConversionStop) {
    for (const char* format : {"%s", "%d-%d", "%n", "%*d", "%1$d", "%f", "%"}) {
        EXPECT_DEATH(incrementingCounter("a", 1, 1, format), "integer conversion") << format;
    }
    EXPECT_DEATH(incrementingCounter("a-9223372036854775807"), "overflows");
}

TEST(StringsTest, LineFeedsAndSpacesAreRemovedButNotOtherBreaks) {
    EXPECT_EQ(minified("a\r\nb\n"), "a\rb");
    // A copy: a view into a temporary argument would dangle.
    auto trimmed = trimmingWhiteSpace(std::string(40, ' ') + "kept past the end of the statement ");
    EXPECT_EQ(trimmed, "kept past the end of the statement");
    static_assert(std::is_same_v<decltype(trimmingWhiteSpace("")), std::string>);
    EXPECT_EQ(trimmingWhiteSpace(" x\n"), "x\n");
    EXPECT_EQ(trimmingWhiteSpace("\t\u3000x y\u00A0"), "x y");
    EXPECT_TRUE(isNotEmpty(" "));
    EXPECT_FALSE(isNotEmpty(""));
    EXPECT_EQ(orEmpty(std::nullopt), "");
    EXPECT_EQ(orEmpty("x"), "x");
}

TEST(StringsTest, SubstringTakesTheOnlyGroupOrTheWholeMatch) {
    EXPECT_EQ(substring("size 640x360", "(\\d+)x"), "640");
    EXPECT_EQ(substring("size 640x360", "(\\d+)x(\\d+)"), "640x360");
    EXPECT_EQ(substring("size 640x360", "\\d+"), "640");
    EXPECT_EQ(substring("size", "\\d"), std::nullopt);
    EXPECT_EQ(substring("size", "("), std::nullopt);
    EXPECT_TRUE(matches("the end", "e.d"));
    EXPECT_FALSE(matches("the end", "^end"));
    EXPECT_FALSE(matches("(", "("));
}

// The search covers as many UTF-16 units as the text has characters, so
// what lies in the last units of text with combining marks or astral
// characters is not found. Deliberate: a search over the whole UTF-16
// length would find all of these.
TEST(StringsTest, SearchesStopShortOfTextWithMoreUnitsThanCharacters) {
    EXPECT_FALSE(matches("e\u0301x", "x"));
    EXPECT_EQ(substring("\U0001F600 7", "\\d"), std::nullopt);
    EXPECT_EQ(paddingNumbers("\U0001F600 7", 2, "0"), "\U0001F600 7");
    EXPECT_EQ(incrementingCounter("\U0001F600-1"), "\U0001F600-1-1");
    RegularExpression digit("\\d");
    EXPECT_EQ(matches(digit, "1e\u03012").size(), 1u);
}

TEST(StringsTest, NaturalOrderComparesNumbersByValueAndIgnoresCase) {
    EXPECT_TRUE(naturallyPrecedes("file2", "file10"));
    EXPECT_FALSE(naturallyPrecedes("file10", "file2"));
    EXPECT_FALSE(naturallyPrecedes("a", "a"));
    EXPECT_FALSE(naturallyPrecedes("a", "A"));
    EXPECT_FALSE(naturallyPrecedes("A", "a"));
    EXPECT_TRUE(naturallyPrecedes("a", "B"));
    EXPECT_TRUE(naturallyPrecedes("e", "\u00E9"));
    std::array<std::string, 5> names{"shot10", "Shot9", "shot1", "alpha", "shot100"};
    std::sort(names.begin(), names.end(), NaturalOrder{});
    EXPECT_EQ(names, (std::array<std::string, 5>{"alpha", "shot1", "Shot9", "shot10", "shot100"}));
}

TEST(StringsTest, BatchReplacementPairsInputsWithReplacements) {
    std::vector<std::string> inputs{"a-x-a", "A-y"};
    EXPECT_EQ(batchReplacingOccurrences(inputs, "a", {"1", "2", "unused"}), (std::vector<std::string>{"1-x-1", "A-y"}));
    EXPECT_EQ(batchReplacingOccurrences(inputs, "a", {"$1", "\\"}, CompareOptions::caseInsensitive),
              (std::vector<std::string>{"$1-x-$1", "\\-y"}));
    EXPECT_EQ(batchReplacingOccurrences(inputs, "([a-z])-", {"<$1>", "($1)"}, CompareOptions::regularExpression),
              (std::vector<std::string>{"<a><x>a", "A-y"}));
    EXPECT_EQ(batchReplacingOccurrences(inputs, "a", {"_", "_"}, CompareOptions::none, RegularExpression::Range{1, 4}),
              (std::vector<std::string>{"a-x-_", "A-y"}));
    auto error = thrownBy<StringReplacementError>(
        [] { return batchReplacingOccurrences(std::array<std::string_view, 3>{"a", "b", "c"}, "a", {"1", "2"}); });
    EXPECT_STREQ(error.what(), "More input strings (3) given than replacement strings (2).");
    EXPECT_EQ(error.elementCount, 3);
    EXPECT_EQ(error.replacementCount, 2);
}

TEST(RegularExpressionMatchingTest, GroupsByNumberAndName) {
    RegularExpression date("(?<year>\\d{4})-(\\d\\d)(-(?<day>\\d\\d))?", RegularExpression::caseInsensitive);
    std::string text = "from 2026-11 to 2027-01-05";
    std::vector<RegularExpression::Match> found = matches(date, text);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(matchedString(found[0], "year", text), "2026");
    EXPECT_EQ(matchedString(found[0], 2, text), "11");
    EXPECT_EQ(matchedString(found[0], "day", text), std::nullopt);
    EXPECT_EQ(matchedString(found[1], "day", text), "05");
    EXPECT_EQ(matchedString(found[1], "month", text), std::nullopt);
    EXPECT_EQ(matchedString(found[1], 9, text), std::nullopt);
    EXPECT_EQ(matchedString(*firstMatch(date, text), 0, text), "2026-11");
    EXPECT_EQ(firstMatch(date, "none"), std::nullopt);
    EXPECT_THROW(RegularExpression("(?<year"), RegularExpressionError);
}
