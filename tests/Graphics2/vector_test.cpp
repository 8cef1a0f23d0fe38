#include <Graphics2/MatrixTransformation.hpp>
#include <Graphics2/Numeric.hpp>
#include <Graphics2/Paired.hpp>
#include <Graphics2/Vector.hpp>

#include <VectorAssertions.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

using namespace vantel;
using vantel::testing::expectNear;

TEST(AngleTest, FactoriesKeepBothUnitsAndSumsRecomputeDegrees) {
    EXPECT_EQ(Angle::fromDegrees(90).radians, 1.5707963267948966);
    EXPECT_EQ(Angle::fromRadians(3.141592653589793).degrees, 180);
    EXPECT_EQ(Angle::twoPi(), Angle(360, 6.283185307179586));
    // Degrees come back from the summed radians, not from 10 + 20.
    EXPECT_EQ((Angle::fromDegrees(10) + Angle::fromDegrees(20)).degrees, 29.999999999999996);
    EXPECT_EQ((Angle::pi() - Angle::halfPi()).radians, Angle::halfPi().radians);
}

TEST(VectorTest, ArithmeticActsOnAllThreeLanes) {
    const Vector p = Vector::point(1, 2);
    EXPECT_EQ(p + p, Vector(2, 4, 2));
    EXPECT_EQ(p + 1.0, Vector(2, 3, 2));
    EXPECT_EQ(2.0 * p, Vector(2, 4, 2));
    EXPECT_EQ(4.0 / Vector(1, 2, 4), Vector(4, 2, 1));
    EXPECT_EQ(p * p, 6);
    EXPECT_FALSE(std::signbit((-Vector(0, 1, 0)).x));  // 0 - lane, never -0
    EXPECT_EQ(Vector(3, 4, 0).mag(), 5);
    EXPECT_EQ(Vector(3, 4, 1).mag(), std::sqrt(26.0));
    EXPECT_EQ(Vector::point(0, 0).dist(Vector::point(3, 4)), 5);
    EXPECT_EQ(Vector::lerp(0.25, Vector(0, 0, 0), Vector(4, 8, 4)), Vector(1, 2, 1));
    EXPECT_TRUE(std::isnan(Vector().normalized().x));
}

TEST(VectorTest, ProductsSignsHeadingAndText) {
    const Vector a(1, 2, 3), b(-4, 0.5, 7);
    EXPECT_EQ(Vector(1, 0, 0).cross(Vector(0, 1, 0)), Vector(0, 0, 1));
    EXPECT_EQ(a.cross(b), Vector(12.5, -19, 8.5));
    EXPECT_EQ(a.cross2(b), a.cross(b));
    EXPECT_EQ(Vector(0, -2, 5).sign(), Vector(0, -1, 1));
    EXPECT_EQ(Vector(NAN, -0.0, 1e-300).sign(), Vector(0, 0, 1));
    EXPECT_EQ(Vector(0, 1, 0).heading().degrees, 90);
    EXPECT_EQ(Vector(1, 2, 3).description(), "Vector (1.0, 2.0, 3.0)");
}

TEST(VectorTest, RotateToRecomputesTheMagnitudeAfterSettingX) {
    Vector v(1, 0, 0);
    v.rotateTo(Angle::fromDegrees(90));
    EXPECT_EQ(v.x, 6.123233995736766e-17);
    EXPECT_EQ(v.y, 6.123233995736766e-17);  // not 1

    Vector w(1, 0, 1);  // z counts in the magnitude and is kept
    w.rotateBy(Angle());
    EXPECT_EQ(w, Vector(std::sqrt(2.0), 0, 1));
}

TEST(VectorTest, MatrixRotateAndMatrixTransformTurnOppositeWays) {
    const Angle quarter = Angle::fromDegrees(90);
    Vector turned(1, 0, 1);
    turned.matrixRotate(quarter);
    expectNear(turned, Vector(0, 1, 1));
    expectNear(Vector(1, 0, 1, MatrixTransformation::rotate(quarter)), Vector(0, -1, 1));

    Vector around(2, 1, 1);
    around.rotateBy(quarter, Vector(1, 1, 1));
    expectNear(around, Vector(1, 2, 1));
}

TEST(VectorTest, TranslationMovesPointsButNotDirections) {
    const Matrix3 move = MatrixTransformation::translate(Vector(5, 7, 0));
    EXPECT_EQ(Vector(1, 2, 1, move), Vector(6, 9, 1));
    EXPECT_EQ(Vector(1, 2, 0, move), Vector(1, 2, 0));
    EXPECT_EQ(move * MatrixTransformation::translate(1, 1), MatrixTransformation::translate(6, 8));
}

TEST(NumericTest, SquaresPenWeightAndClamping) {
    double value = 3;
    square(value);
    EXPECT_EQ(value, 9);
    EXPECT_EQ(squared(-4), 16);
    EXPECT_EQ(penWeight(1), 2.8);
    EXPECT_EQ(clamped(5.0, 0, 1), 1);
    EXPECT_EQ(clamped(-5, 0, 10), 0);
    EXPECT_EQ(clamped(0.5, 1, 0), 0);  // raised to 1 first, then lowered to 0
}

TEST(PairedTest, ConsecutivePairsAndPolylineLength) {
    const std::vector<int> items{1, 2, 4};
    EXPECT_EQ(paired(items), (std::vector<std::pair<int, int>>{{1, 2}, {2, 4}}));
    EXPECT_TRUE(paired(std::vector<int>{1}).empty());
    EXPECT_EQ(pairedMap(items, [](int a, int b) { return b - a; }), (std::vector<int>{1, 2}));
    auto evenGap = [](int a, int b) { return (b - a) % 2 == 0 ? std::optional(b) : std::nullopt; };
    EXPECT_EQ(pairedCompactMap(items, evenGap), (std::vector<int>{4}));

    EXPECT_EQ(length({Vector::point(1, 1)}), 0);
    EXPECT_EQ(length({Vector::point(0, 0), Vector::point(3, 4), Vector::point(3, 0)}), 9);
}
