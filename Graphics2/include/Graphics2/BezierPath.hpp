#pragma once

#include <Graphics2/Vector.hpp>
#include <Platform/XML.hpp>

#include <optional>

#include <initializer_list>
#include <utility>
#include <vector>

namespace vantel {

// A Bezier curve of any degree given by its control polygon: the first and
// last points are the curve's ends; 2 points are a line, 3 a quadratic, 4 a
// cubic, more a higher degree. At least one point is needed by everything
// that evaluates it; an empty polygon is a programming error.
struct BezierPath {
    // How the curve is to be written out; never changes its geometry.
    struct Style {
        enum class Kind { sampled, curve };
        Kind kind = Kind::curve;
        double step = 0;  // the parameter step of a sampled style

        static Style sampled(double step) { return {Kind::sampled, step}; }
        static Style curve() { return {Kind::curve, 0}; }
        friend bool operator==(const Style&, const Style&) = default;
    };

    std::vector<Vector> controlPoints;
    Style style;

    BezierPath() = default;
    explicit BezierPath(std::vector<Vector> controlPoints, Style style = Style::curve());
    BezierPath(std::initializer_list<Vector> controlPoints, Style style = Style::curve());

    // de Casteljau; t is not clamped, so values outside 0...1 extrapolate.
    Vector bezier(double t) const;
    Vector pointOnPerimeter(double t) const { return bezier(t); }

    // The halves before and after t, each with as many points as this one.
    // Both come back styled as curves whatever this one's style is.
    std::pair<BezierPath, BezierPath> splitCurve(double t) const;

    // Up to four points: a "path" of M and Q/C data, written as given even
    // where SVG finds it malformed. More: the curve sampled at 0.01 as a
    // "polyline".
    std::optional<XMLElement> svgElement() const;
    // A "g" of the control polygon and the curve.
    std::optional<XMLElement> debugSVG() const;

    friend bool operator==(const BezierPath&, const BezierPath&) = default;
};

}  // namespace vantel
