#include <Platform/NumberText.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using vantel::numberText;

// Shortest round-trip digits, always with a fractional part, and an exponent
// of two digits at least where printf's %g would write one.
TEST(NumberTextTest, ShortestRoundTripDigitsWithAFractionOrAnExponent) {
    EXPECT_EQ(numberText(10.0), "10.0");
    EXPECT_EQ(numberText(0.0), "0.0");
    EXPECT_EQ(numberText(-3.0), "-3.0");
    EXPECT_EQ(numberText(2.5), "2.5");
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(numberText(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(numberText(595.2755905511812), "595.2755905511812");
    EXPECT_EQ(numberText(1e-05), "1e-05");
    EXPECT_EQ(numberText(6.123233995736766e-17), "6.123233995736766e-17");
    EXPECT_EQ(numberText(1e20), "1e+20");
    EXPECT_EQ(numberText(0.0001), "0.0001");
}

TEST(NumberTextTest, NonFiniteValuesHaveNames) {
    EXPECT_EQ(numberText(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(numberText(-std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(numberText(std::nan("")), "nan");
}
