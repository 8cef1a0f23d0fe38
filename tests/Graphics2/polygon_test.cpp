#include <Graphics2/Polygon.hpp>

#include <gtest/gtest.h>

using namespace vantel;

namespace {
Vector p(double x, double y) { return Vector::point(x, y); }
const std::vector<Vector> unitSquare{p(0, 0), p(1, 0), p(1, 1), p(0, 1)};
}  // namespace

TEST(PolygonTest, ContainsCountsLeftAndBottomEdgesInside) {
    EXPECT_TRUE(contains(unitSquare, p(0.5, 0.5)));
    EXPECT_TRUE(contains(unitSquare, p(0, 0.5)));
    EXPECT_FALSE(contains(unitSquare, p(1, 0.5)));
    EXPECT_TRUE(contains(unitSquare, p(0.5, 0)));
    EXPECT_FALSE(contains(unitSquare, p(0.5, 1)));
    EXPECT_FALSE(contains(unitSquare, p(1.5, 0.5)));
    // Clockwise order winds negatively, still inside.
    EXPECT_TRUE(contains({p(0, 0), p(0, 1), p(1, 1), p(1, 0)}, p(0.5, 0.5)));
}

TEST(PolygonTest, ShortOrRepeatedOutlinesBehaveAsStated) {
    for (auto test : {crossingNumber, windingNumber}) {
        EXPECT_FALSE(test(p(0.5, 0), {p(0, 0), p(1, 0)}));
        const std::vector<Vector> open{p(0, 0), p(4, 0), p(0, 4)};
        const std::vector<Vector> closed{p(0, 0), p(4, 0), p(0, 4), p(0, 0)};
        for (const Vector& probe : {p(1, 1), p(3, 3), p(-1, 1), p(1, 5)}) {
            EXPECT_EQ(test(probe, open), test(probe, closed));
        }
        EXPECT_TRUE(test(p(1, 1), open));
        EXPECT_FALSE(test(p(-1, 1), open));
    }
}

TEST(PolygonTest, CrossingNumberKeepsItsAsymmetricAbscissa) {
    // (5, 1) lies outside the triangle; the crossing abscissa of the slanted
    // edge, parameter from its end and position from its start, is 7 rather
    // than 3, so the even-odd test counts it in while the winding test does not.
    const std::vector<Vector> triangle{p(0, 0), p(4, 0), p(0, 4)};
    EXPECT_TRUE(crossingNumber(p(5, 1), triangle));
    EXPECT_FALSE(windingNumber(p(5, 1), triangle));
    EXPECT_TRUE(crossingNumber(p(0.5, 0.5), unitSquare));
    EXPECT_FALSE(crossingNumber(p(1, 0.5), unitSquare));
}

TEST(PolygonTest, EvenOddAndNonZeroDifferInsideADoubleLoop) {
    // The same square walked twice winds twice: non-zero says inside,
    // even-odd says outside.
    std::vector<Vector> twice = unitSquare;
    twice.insert(twice.end(), unitSquare.begin(), unitSquare.end());
    EXPECT_TRUE(windingNumber(p(0.5, 0.5), twice));
    EXPECT_FALSE(crossingNumber(p(0.5, 0.5), twice));
}

TEST(PolygonTest, BoundingBoxAndPerimeterOfAPointList) {
    // The far corner starts at (0, 0): points below the x axis still reach it.
    const Rectangle box = boundingBox({p(2, -3), p(6, -4), p(4, -2)});
    EXPECT_EQ(box.origin, p(4, -2));
    EXPECT_EQ(box.width, 4);
    EXPECT_EQ(box.height, 4);
    EXPECT_EQ(pointOnPerimeter(unitSquare, 0.5), p(1, 0.5));
}
