#pragma once

#include <Graphics2/Angle.hpp>
#include <Graphics2/Rectangle.hpp>
#include <Graphics2/Vector.hpp>
#include <Platform/XML.hpp>

#include <optional>

namespace vantel {

struct Circle {
    double radius = 0;
    Vector center;

    Circle() = default;
    Circle(const Vector& center, double radius);
    // The centre (x, y, 1).
    Circle(double x, double y, double radius);

    double diameter() const;
    // The point of the outline in the direction angle (z = 1).
    Vector pointAt(Angle angle) const;
    // Parameter t maps to t × π radians: 0...1 covers half the circle.
    Vector pointOnPerimeter(double t) const;

    // The shape as an SVG element with a black stroke (SVGElements.cpp).
    std::optional<XMLElement> svgElement() const;
    Rectangle boundingBox() const;
};

}  // namespace vantel
