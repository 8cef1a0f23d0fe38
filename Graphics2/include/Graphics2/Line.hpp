#pragma once

#include <Graphics2/Angle.hpp>
#include <Graphics2/CGContext.hpp>
#include <Graphics2/Vector.hpp>
#include <Platform/XML.hpp>

#include <optional>

namespace vantel {

struct Line {
    Vector start;
    Vector end;

    Line() = default;
    Line(const Vector& start, const Vector& end);
    // Both points with z = 1.
    Line(double x1, double y1, double x2, double y2);

    double length() const;
    Vector center() const;
    // Whether p lies exactly on the ray from start through end (also past
    // end), compared without tolerance. A zero-length line contains nothing.
    bool contains(const Vector& p) const;
    Vector normal() const;
    // Unguarded: a vertical line gives ±infinity or NaN.
    double slope() const;
    // From the slope, so within -90°...90° and blind to direction.
    Angle angle() const;
    // The point at distance d from start towards end.
    Vector pointAt(double d) const;
    Vector pointOnPerimeter(double t) const;

    // The shape as an SVG element with a black stroke (SVGElements.cpp).
    std::optional<XMLElement> svgElement() const;
    Vector lerp(double t) const;

    // One stroked segment; the context's state is left as it was, the path empty.
    void draw(CGContext& context) const;
};

}  // namespace vantel
