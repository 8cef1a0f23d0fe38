#include <Graphics2/Circle.hpp>
#include <Graphics2/Line.hpp>
#include <Graphics2/Path.hpp>
#include <Graphics2/Rectangle.hpp>
#include <Graphics2/Size.hpp>

#include <VectorAssertions.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace vantel;
using vantel::testing::expectNear;

namespace {
Vector onXAxis(double x) { return Vector::point(x, 0); }
}  // namespace

TEST(RectangleTest, CornersRunFromTopLeftAndTurnCounterClockwiseOnThePage) {
    const Vector center = Vector::point(10, 20);
    EXPECT_EQ(Rectangle(center, 4, 2, Angle()).points(),
              (std::vector<Vector>{Vector::point(8, 19), Vector::point(12, 19),
                                   Vector::point(12, 21), Vector::point(8, 21)}));

    const auto turned = Rectangle(center, 4, 2, Angle::fromDegrees(90)).points();
    ASSERT_EQ(turned.size(), 4u);
    expectNear(turned[0], Vector::point(9, 22));
    expectNear(turned[1], Vector::point(9, 18));
    expectNear(turned[2], Vector::point(11, 18));
    expectNear(turned[3], Vector::point(11, 22));
}

TEST(RectangleTest, OtherInitialisersCentreAPoint) {
    EXPECT_EQ(Rectangle::centerX(3, 4, 1, 1, Angle()).origin, Vector(3, 4, 1));
    const Rectangle page(Size(100, 50, 5), Angle());
    EXPECT_EQ(page.origin, Vector(50, 25, 1));
    EXPECT_EQ(page.width, 100);  // the margin is ignored
    EXPECT_EQ(page.height, 50);
}

TEST(RectangleTest, PolygonMembersWalkTheOpenOutline) {
    const Rectangle square(Vector::point(1, 1), 2, 2, Angle());
    EXPECT_TRUE(square.contains(Vector::point(0, 1)));
    EXPECT_FALSE(square.contains(Vector::point(2, 1)));
    // Corners (0,0) (2,0) (2,2) (0,2): the walk is 6 long, not 8.
    EXPECT_EQ(square.pointOnPerimeter(0.5), Vector::point(2, 1));
    EXPECT_EQ(square.pointOnPerimeter(1), Vector::point(0, 2));

    const Rectangle box = Rectangle(Vector::point(10, 20), 4, 2, Angle::fromDegrees(90)).boundingBox();
    EXPECT_NEAR(box.width, 2, 1e-12);
    EXPECT_NEAR(box.height, 4, 1e-12);
    expectNear(box.origin, Vector::point(10, 20));
}

TEST(CircleTest, PerimeterParameterCoversHalfATurnPerUnit) {
    const Circle unit(0, 0, 1);
    expectNear(unit.pointOnPerimeter(1), Vector::point(-1, 0));
    expectNear(unit.pointOnPerimeter(0.5), Vector::point(0, 1));
    expectNear(unit.pointAt(Angle::fromDegrees(270)), Vector::point(0, -1));
    EXPECT_EQ(unit.diameter(), 2);

    const Rectangle box = Circle(Vector(1, 2, 5), 3).boundingBox();
    EXPECT_EQ(box.origin, Vector(1, 2, 5));  // all lanes of the centre kept
    EXPECT_EQ(box.width, 6);
    EXPECT_EQ(box.height, 6);
}

TEST(LineTest, ContainsAnswersForTheRayWithExactEquality) {
    const Line line(onXAxis(0), onXAxis(2));
    EXPECT_TRUE(line.contains(onXAxis(1)));
    EXPECT_TRUE(line.contains(onXAxis(5)));  // beyond the end
    EXPECT_FALSE(line.contains(onXAxis(-1)));
    EXPECT_FALSE(line.contains(Vector::point(1, 1e-12)));
    EXPECT_FALSE(Line(onXAxis(1), onXAxis(1)).contains(onXAxis(1)));
}

TEST(LineTest, SlopeAngleAndPointsAlongTheLine) {
    EXPECT_EQ(Line(0, 0, 1, -1).angle().degrees, -45);
    EXPECT_EQ(Line(0, 0, 0, 5).slope(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(Line(0, 0, 0, 5).angle().degrees, 90);
    EXPECT_EQ(Line(0, 0, 0, -5).angle().degrees, -90);

    const Line line(0, 0, 3, 4);
    expectNear(line.pointAt(10), Vector::point(6, 8));
    EXPECT_EQ(line.lerp(2), Vector::point(6, 8));  // not clamped
    EXPECT_EQ(line.center(), Vector::point(1.5, 2));
    expectNear(line.normal(), Vector(-0.8, 0.6, 1));
    EXPECT_EQ(Line(Vector(0, 0, 0), Vector(3, 4, 12)).length(), 13);  // z counts
}

TEST(PathTest, LerpWalksByDistanceAndStopsAtTheLastPoint) {
    const Path path{Vector::point(0, 0), Vector::point(10, 0), Vector::point(10, 10)};
    EXPECT_EQ(path.length(), 20);
    EXPECT_EQ(path.lerp(0.75), Vector::point(10, 5));
    EXPECT_EQ(path.lerp(2), Vector::point(10, 10));
    EXPECT_EQ(path.lerp(-0.5), Vector::point(-10, 0));  // back along the first segment
    EXPECT_EQ(Path{Vector::point(3, 3)}.pointOnPerimeter(0.5), Vector::point(3, 3));
    EXPECT_FALSE(path.isEmpty());
}

TEST(PathTest, BoundingBoxAlwaysReachesTheAxes) {
    const Rectangle box = Path{Vector::point(-5, -5), Vector::point(-1, -2)}.boundingBox();
    EXPECT_EQ(box.origin, Vector::point(-2.5, -2.5));
    EXPECT_EQ(box.width, 5);
    EXPECT_EQ(box.height, 5);

    const Rectangle none = Path().boundingBox();
    EXPECT_TRUE(std::isnan(none.origin.x));
    EXPECT_EQ(none.width, -std::numeric_limits<double>::infinity());
}

TEST(PathTest, StridesMultiplyTheStepAndHonourTheEnd) {
    auto xs = [](const Path& path) {
        std::vector<double> values;
        for (const Vector& p : path.points) values.push_back(p.x);
        return values;
    };
    EXPECT_EQ(xs(Path::strideFromTo(0, 1, 0.25, onXAxis)), (std::vector<double>{0, 0.25, 0.5, 0.75}));
    EXPECT_EQ(xs(Path::strideFromThrough(0, 1, 0.25, onXAxis)),
              (std::vector<double>{0, 0.25, 0.5, 0.75, 1}));
    EXPECT_EQ(xs(Path::strideFromThrough(1, 0, -0.5, onXAxis)), (std::vector<double>{1, 0.5, 0}));
    EXPECT_EQ(xs(Path::strideFromTo(1, 0, -0.5, onXAxis)), (std::vector<double>{1, 0.5}));
    EXPECT_TRUE(Path::strideFromTo(0, 1, -0.5, onXAxis).isEmpty());

    // Ten additions of 0.1 fall short of 1; 10 × 0.1 does not.
    const Path tenths = Path::strideFromThrough(0, 1, 0.1, onXAxis);
    ASSERT_EQ(tenths.points.size(), 11u);
    EXPECT_EQ(tenths.points.back().x, 1.0);
}

TEST(PathDeathTest, ZeroStepAndEmptyWalkStop) {
    EXPECT_DEATH(Path::strideFromTo(0, 1, 0, onXAxis), "Stride size must not be zero");
    EXPECT_DEATH(Path().lerp(0.5), "empty point list");
    EXPECT_DEATH(lerp(std::vector<Vector>{}, 0), "empty point list");
}
