#pragma once

#include <Graphics2/Rectangle.hpp>
#include <Graphics2/Vector.hpp>
#include <Platform/XML.hpp>

#include <optional>

#include <functional>
#include <initializer_list>
#include <vector>

namespace vantel {

// An open polyline.
struct Path {
    std::vector<Vector> points;

    Path() = default;
    explicit Path(std::vector<Vector> points);
    Path(std::initializer_list<Vector> points);

    // f(start + i × step) for i = 0, 1, ... while the value lies before end
    // (strideFromTo) or before or at it (strideFromThrough). A step away from
    // end gives an empty path; a zero step is fatal.
    static Path strideFromTo(double start, double end, double step,
                             const std::function<Vector(double)>& f);
    static Path strideFromThrough(double start, double end, double step,
                                  const std::function<Vector(double)>& f);

    bool isEmpty() const;
    double length() const;
    Rectangle boundingBox() const;
    Vector pointOnPerimeter(double t) const;

    // The shape as an SVG element with a black stroke (SVGElements.cpp).
    std::optional<XMLElement> svgElement() const;
    Vector lerp(double t) const;

    friend bool operator==(const Path&, const Path&) = default;
};

}  // namespace vantel
