#pragma once

#include <Graphics2/BezierPath.hpp>
#include <Graphics2/Circle.hpp>
#include <Graphics2/Line.hpp>
#include <Graphics2/Path.hpp>
#include <Graphics2/PerlinGenerator.hpp>
#include <Graphics2/Rectangle.hpp>
#include <Platform/Fatal.hpp>

#include <concepts>
#include <functional>
#include <variant>
#include <vector>

namespace vantel {

// The perimeter-bearing shapes: Rectangle, Circle, Line, Path, BezierPath.
// Each maps a parameter t, nominally 0...1, to a point of its outline.
template <class S>
concept Shape = requires(const S& shape, double t) {
    { shape.pointOnPerimeter(t) } -> std::same_as<Vector>;
};

// Any one of the shapes, for collections that mix them.
using AnyShape = std::variant<Rectangle, Circle, Line, Path, BezierPath>;

// The shape itself as a collection of one, so that a shape and a shape made
// of several can be handed to the same code.
template <Shape S>
std::vector<AnyShape> asShapes(const S& shape) {
    return {AnyShape(shape)};
}

namespace detail {

// Calls visit(i, t) for t = i × step while t < 1, then for t = 1 only when
// a multiple hits it exactly. Multiplying rather than adding keeps the
// parameters free of accumulated error. A negative step visits nothing.
template <class Visit>
void forEachUnitParameter(double step, Visit&& visit) {
    if (step < 0) return;
    for (double i = 0;; ++i) {
        const double t = i * step;
        if (!(t <= 1.0)) break;
        visit(i, t);
    }
}

}  // namespace detail

// The outline at parameters 0, step, 2 × step, ... through 1. The step is a
// fraction of the parameter range, not a distance: a circle's range is half
// a turn. A zero step is a programming error.
template <Shape S>
std::vector<Vector> sampledPoints(const S& shape, double step) {
    if (step == 0) fatalError("Stride size must not be zero");
    std::vector<Vector> points;
    detail::forEachUnitParameter(step, [&](double, double t) { points.push_back(shape.pointOnPerimeter(t)); });
    return points;
}

template <Shape S>
Path sampled(const S& shape, double step) {
    return Path(sampledPoints(shape, step));
}

// The outline cut into runs by noise: keep(i ÷ (1 ÷ step), noise at the
// point) decides for sample i whether its point continues the current run.
// Each call draws a fresh noise table. The last run is always appended,
// even when empty, so a zero step gives one empty path.
template <Shape S>
std::vector<Path> randomSample(const S& shape, double step, const std::function<bool(double, double)>& keep) {
    PerlinGenerator generator;
    std::vector<Path> runs;
    std::vector<Vector> current;
    if (step != 0) {
        detail::forEachUnitParameter(step, [&](double i, double t) {
            Vector point = shape.pointOnPerimeter(t);
            if (keep(i / (1.0 / step), generator.noise(point))) {
                current.push_back(point);
            } else if (!current.empty()) {
                runs.emplace_back(std::move(current));
                current.clear();
            }
        });
    }
    runs.emplace_back(std::move(current));
    return runs;
}

// Points are kept while the noise stays below the threshold.
template <Shape S>
std::vector<Path> randomSample(const S& shape, double step, double threshold) {
    return randomSample(shape, step, [threshold](double, double value) { return threshold > value; });
}

}  // namespace vantel
