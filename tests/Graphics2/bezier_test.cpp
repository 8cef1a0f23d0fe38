#include <Graphics2/Shape.hpp>

#include <gtest/gtest.h>

using namespace vantel;

namespace {

Vector point(double x, double y) { return {x, y, 1}; }

std::vector<double> xs(const std::vector<Vector>& points) {
    std::vector<double> result;
    for (const auto& p : points) result.push_back(p.x);
    return result;
}

}  // namespace

TEST(BezierTest, EvaluatesAnyDegree) {
    EXPECT_EQ(BezierPath({point(0, 0), point(4, 2)}).bezier(0.5), point(2, 1));
    EXPECT_EQ(BezierPath({point(0, 0), point(1, 2), point(2, 0)}).bezier(0.5), point(1, 1));
    EXPECT_EQ(BezierPath({point(3, 4)}).bezier(0.7), point(3, 4));
    // Unclamped: t = 2 extrapolates the line.
    EXPECT_EQ(BezierPath({point(0, 0), point(1, 0)}).pointOnPerimeter(2), point(2, 0));
}

TEST(BezierTest, SplitsIntoTwoCurvesWhateverTheStyle) {
    BezierPath cubic({point(0, 0), point(0, 1), point(1, 1), point(1, 0)}, BezierPath::Style::sampled(0.1));
    auto [left, right] = cubic.splitCurve(0.5);
    EXPECT_EQ(left.controlPoints, (std::vector{point(0, 0), point(0, 0.5), point(0.25, 0.75), point(0.5, 0.75)}));
    EXPECT_EQ(right.controlPoints, (std::vector{point(0.5, 0.75), point(0.75, 0.75), point(1, 0.5), point(1, 0)}));
    EXPECT_EQ(left.style, BezierPath::Style::curve());
    EXPECT_EQ(right.style, BezierPath::Style::curve());
    auto [a, b] = BezierPath({point(2, 2)}).splitCurve(0.3);
    EXPECT_EQ(a.controlPoints, b.controlPoints);
}

TEST(ShapeTest, AsShapesIsTheShapeAlone) {
    const BezierPath curve({Vector(0, 0, 1), Vector(1, 1, 1)}, BezierPath::Style::curve());
    const std::vector<AnyShape> shapes = asShapes(curve);
    ASSERT_EQ(shapes.size(), 1u);
    ASSERT_TRUE(std::holds_alternative<BezierPath>(shapes[0]));
    EXPECT_EQ(std::get<BezierPath>(shapes[0]).controlPoints, curve.controlPoints);
}

TEST(BezierDeathTest, EmptyControlPolygonStops) {
    EXPECT_DEATH(BezierPath().bezier(0.5), "at least one control point");
    EXPECT_DEATH(BezierPath().splitCurve(0.5), "at least one control point");
    EXPECT_DEATH(sampledPoints(Line(0, 0, 1, 0), 0), "must not be zero");
}

TEST(SamplingTest, StrideEndsAtOneOnlyWhenHitExactly) {
    Line line(0, 0, 10, 0);
    EXPECT_EQ(xs(sampledPoints(line, 0.25)), (std::vector<double>{0, 2.5, 5, 7.5, 10}));
    EXPECT_EQ(sampled(line, 0.3).points.size(), 4u);
    EXPECT_TRUE(sampledPoints(line, -0.1).empty());
    // 0.1 added ten times misses 1; ten times 0.1 hits it.
    EXPECT_EQ(sampledPoints(line, 0.1).size(), 11u);
    EXPECT_EQ(sampledPoints(Circle(0, 0, 1), 0.5).back().x, -1.0);
    EXPECT_EQ(sampledPoints(Rectangle(), 0.5).size(), 3u);
    EXPECT_EQ(sampledPoints(BezierPath({point(0, 0), point(1, 1)}), 0.5).size(), 3u);
    EXPECT_EQ(sampledPoints(Path{point(0, 0), point(1, 1)}, 0.5).size(), 3u);
}

TEST(SamplingTest, RandomSampleCutsRunsAndAlwaysEndsWithTheLastRun) {
    Line line(0, 0, 10, 0);
    auto all = randomSample(line, 0.25, [](double, double) { return true; });
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0].points.size(), 5u);

    auto none = randomSample(line, 0.25, [](double, double) { return false; });
    ASSERT_EQ(none.size(), 1u);
    EXPECT_TRUE(none[0].isEmpty());

    EXPECT_EQ(randomSample(line, 0, 0.5).size(), 1u);

    std::vector<double> indices;
    auto alternate = randomSample(line, 0.25, [&](double i, double) {
        indices.push_back(i);
        return i != 0.5;
    });
    // The predicate sees i ÷ (1 ÷ step), which is t again.
    EXPECT_EQ(indices, (std::vector<double>{0, 0.25, 0.5, 0.75, 1}));
    ASSERT_EQ(alternate.size(), 2u);
    EXPECT_EQ(xs(alternate[1].points), (std::vector<double>{7.5, 10}));

    // Noise never reaches 1, so a threshold of 1 keeps everything.
    EXPECT_EQ(randomSample(line, 0.25, 1.0)[0].points.size(), 5u);
}
