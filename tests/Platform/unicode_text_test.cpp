#include <Platform/SecureRandom.hpp>
#include <Platform/UnicodeText.hpp>

#include <gtest/gtest.h>

#include <set>

using namespace vantel;

TEST(UnicodeTextTest, TrimsUnicodeSpaceButKeepsMalformedBytes) {
    EXPECT_EQ(trimmingWhiteSpace("\u00A0\t ab c\u3000\n\u2029"), "ab c");
    EXPECT_EQ(trimmingWhiteSpace(" \xFF "), "\xFF");
    EXPECT_EQ(trimmingWhiteSpace(" \u2028 "), "");
    EXPECT_EQ(trimmingWhiteSpace("x\u200B"), "x\u200B");  // zero-width space is not white space
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
