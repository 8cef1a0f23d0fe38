#include <Platform/SecureRandom.hpp>
#include <Platform/UnicodeText.hpp>

#include <gtest/gtest.h>

#include <set>

using namespace vantel;

TEST(UnicodeTextTest, TrimsUnicodeSpaceButKeepsMalformedBytes) {
    EXPECT_EQ(trimmingWhiteSpaceAndNewlines("\u00A0\t ab c\u3000\n\u2029"), "ab c");
    EXPECT_EQ(trimmingWhiteSpaceAndNewlines(" \xFF "), "\xFF");
    EXPECT_EQ(trimmingWhiteSpaceAndNewlines(" \u2028 "), "");
    EXPECT_EQ(trimmingWhiteSpaceAndNewlines("x\u200B"), "x\u200B");  // zero-width space is not white space
}

TEST(UnicodeTextTest, CountsCharactersAndUtf16Units) {
    EXPECT_TRUE(isUppercase(U'\u00C9'));
    EXPECT_FALSE(isUppercase(U'\u00E9'));
    EXPECT_FALSE(isUppercase(U'1'));
    EXPECT_EQ(graphemeCount("e\u0301x"), 2u);
    EXPECT_EQ(utf16Length("e\u0301x"), 3u);
    EXPECT_EQ(utf16Length("\U0001F600"), 2u);
    EXPECT_EQ(decodeCodePoint("a\xE2\x82", 1).value, U'\uFFFD');
}

TEST(UnicodeTextTest, CharacterClassesForCapitalsAndLineSpaces) {
    EXPECT_TRUE(isUppercaseLetter(U'\u00C9'));
    EXPECT_TRUE(isUppercaseLetter(U'\u01C5'));    // Dž, title case
    EXPECT_FALSE(isUppercaseLetter(U'\u24B6'));   // circled A: upper case, but a symbol
    EXPECT_FALSE(isUppercaseLetter(U'a'));
    EXPECT_TRUE(isSpaceOrTab(U'\t'));
    EXPECT_TRUE(isSpaceOrTab(U'\u3000'));
    EXPECT_FALSE(isSpaceOrTab(U'\n'));
    EXPECT_FALSE(isSpaceOrTab(U'\u2028'));
}

TEST(UnicodeTextTest, Utf16PositionsMapToByteOffsets) {
    std::string_view text = "a\u00E9\U0001F600z";  // bytes 0, 1-2, 3-6, 7; units 0, 1, 2-3, 4
    EXPECT_EQ(utf8Offset(text, 0), 0u);
    EXPECT_EQ(utf8Offset(text, 2), 3u);
    EXPECT_EQ(utf8Offset(text, 3), 3u);  // inside the surrogate pair: its character's start
    EXPECT_EQ(utf8Offset(text, 4), 7u);
    EXPECT_EQ(utf8Offset(text, 99), text.size());
}

TEST(SecureRandomTest, DrawsStayInTheirClosedRanges) {
    EXPECT_EQ(secureRandomInClosedRange(7, 7), 7u);
    std::set<std::uint64_t> seen;
    for (int i = 0; i < 200; ++i) {
        std::uint64_t value = secureRandomInClosedRange(3, 5);
        ASSERT_GE(value, 3u);
        ASSERT_LE(value, 5u);
        seen.insert(value);
        double unit = secureRandomUnitClosed();
        ASSERT_GE(unit, 0.0);
        ASSERT_LE(unit, 1.0);
    }
    EXPECT_EQ(seen.size(), 3u);  // 200 draws miss one of three values with odds of about 1e-35
    EXPECT_NE(SecureRandom()(), SecureRandom()());
}
