#include <Graphics2/PerlinGenerator.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

using vantel::PerlinGenerator;

namespace {

// A table whose entry i is i / 4096, so every read names its index.
void fillWithIndices(PerlinGenerator& generator) {
    for (std::size_t i = 0; i < generator.perlin.size(); ++i) generator.perlin[i] = static_cast<double>(i) / 4096.0;
}

double ease(double f) { return 0.5 * (1.0 - std::cos(f * std::numbers::pi)); }

}  // namespace

TEST(PerlinTest, FreshGeneratorsHoldDistinctUnitTables) {
    PerlinGenerator a, b;
    ASSERT_EQ(a.perlin.size(), 4096u);
    for (double v : a.perlin) ASSERT_TRUE(v >= 0.0 && v <= 1.0);
    EXPECT_NE(a.noise(3.3, 1.7, 0.2), b.noise(3.3, 1.7, 0.2));
}

TEST(PerlinTest, NoiseIsMirroredAndStaysInRange) {
    PerlinGenerator generator;
    for (double x : {0.0, 0.3, 1.5, 17.25, 400.75}) {
        double value = generator.noise(x, 2.5, 0.75);
        EXPECT_EQ(generator.noise(-x, 2.5, 0.75), value);
        EXPECT_EQ(generator.noise(x, -2.5, 0.75), value);
        EXPECT_EQ(generator.noise(x, 2.5, -0.75), value);
        EXPECT_GE(value, 0.0);
        EXPECT_LE(value, 0.75);
    }
}

TEST(PerlinTest, LatticePointsReadTheTableAndZeroOctavesGiveZero) {
    PerlinGenerator generator;
    fillWithIndices(generator);
    generator.octives = 1;
    EXPECT_DOUBLE_EQ(generator.noise(3, 2, 1), 0.5 * (3 + 32 + 256) / 4096.0);
    // The offset wraps through the mask.
    EXPECT_DOUBLE_EQ(generator.noise(4095, 0, 1), 0.5 * ((4095 + 256) & 4095) / 4096.0);
    generator.octives = 0;
    EXPECT_EQ(generator.noise(1.5, 2.5, 3.5), 0.0);
    // No octave is summed, so no coordinate is turned into a lattice point.
    EXPECT_EQ(generator.noise(std::numeric_limits<double>::infinity(), std::nan(""), 1e300), 0.0);
}

// With the index table every mix is linear in the offset, so an octave reads
// (offset + ease(xf) + 16 ease(yf) + 256 ease(zf)) / 4096: each lane's step
// and ease shows in the value.
TEST(PerlinTest, EveryLaneIsEasedAndTheSecondOctaveRaisesXByTwo) {
    PerlinGenerator generator;
    fillWithIndices(generator);
    auto octave = [](double offset, double xf, double yf, double zf) {
        return (offset + ease(xf) + 16 * ease(yf) + 256 * ease(zf)) / 4096.0;
    };
    // Second octave: x 3.3 -> lattice 6 + 2.3, carried to 7 + 1.3; y 2.6 -> 5.2 -> 5 + 0.2; z 1.2 -> 2.4.
    double first = octave(3 + 2 * 16 + 1 * 256, 0.3, 0.6, 0.2);
    double second = octave(7 + 5 * 16 + 2 * 256, 1.3, 0.2, 0.4);
    EXPECT_NEAR(generator.noise(3.3, 2.6, 1.2), 0.5 * first + 0.25 * second, 1e-12);
}

using PerlinDeathTest = ::testing::Test;

TEST(PerlinDeathTest, ProgrammingErrorsStopTheProcess) {
    PerlinGenerator generator;
    EXPECT_DEATH(generator.noise(std::nan(""), 0, 0), "no 64-bit integer floor");
    EXPECT_DEATH(generator.noise(0, std::numeric_limits<double>::infinity(), 0), "no 64-bit integer floor");
    EXPECT_DEATH(generator.noise(0, 0, 1e19), "no 64-bit integer floor");
    EXPECT_DEATH(generator.noise(9.2e18, 1e17, 0), "overflows");
    generator.perlin.resize(4095);
    EXPECT_DEATH(generator.noise(1, 1, 1), "table holds 4095 values");
    generator.octives = -1;
    EXPECT_DEATH(generator.noise(1, 1, 1), "negative octave count");
}
