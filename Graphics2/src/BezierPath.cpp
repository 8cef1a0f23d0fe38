#include <Graphics2/BezierPath.hpp>

#include <Platform/Fatal.hpp>

namespace vantel {

namespace {

void requirePoints(const std::vector<Vector>& points) {
    if (points.empty()) fatalError("BezierPath needs at least one control point");
}

}  // namespace

BezierPath::BezierPath(std::vector<Vector> controlPoints, Style style)
    : controlPoints(std::move(controlPoints)), style(style) {}

BezierPath::BezierPath(std::initializer_list<Vector> controlPoints, Style style)
    : controlPoints(controlPoints), style(style) {}

Vector BezierPath::bezier(double t) const {
    requirePoints(controlPoints);
    std::vector<Vector> points = controlPoints;
    for (std::size_t remaining = points.size() - 1; remaining > 0; --remaining) {
        for (std::size_t j = 0; j < remaining; ++j) points[j] = points[j] + (points[j + 1] - points[j]) * t;
    }
    return points.front();
}

std::pair<BezierPath, BezierPath> BezierPath::splitCurve(double t) const {
    requirePoints(controlPoints);
    std::vector<Vector> points = controlPoints;
    std::vector<Vector> left{points.front()};
    for (std::size_t remaining = points.size() - 1; remaining > 0; --remaining) {
        points[0] = points[0] + (points[1] - points[0]) * t;
        left.push_back(points[0]);
        for (std::size_t j = 1; j < remaining; ++j) points[j] = points[j] + (points[j + 1] - points[j]) * t;
    }
    return {BezierPath(std::move(left)), BezierPath(std::move(points))};
}

}  // namespace vantel
