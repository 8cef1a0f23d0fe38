#pragma once

#include <Graphics2/Angle.hpp>
#include <Graphics2/CGContext.hpp>
#include <Graphics2/Vector.hpp>
#include <Platform/XML.hpp>

#include <optional>

#include <vector>

namespace vantel {

struct Size;

// A rectangle given by its centre (origin), size and a rotation about the
// centre. It is the library's one polygon.
struct Rectangle {
    Vector origin;  // the centre, not a corner
    double width = 0;
    double height = 0;
    Angle rotation;

    Rectangle() = default;
    Rectangle(const Vector& center, double width, double height, Angle rotation);
    // The centre (centerX, y, 1).
    static Rectangle centerX(double centerX, double y, double width, double height, Angle rotation);
    // The whole page, centred on it; the margin is ignored.
    Rectangle(const Size& size, Angle rotation);

    std::vector<Vector> points() const;
    // The corners (-w/2, -h/2), (w/2, -h/2), (w/2, h/2), (-w/2, h/2) rotated
    // about the centre, then moved to it. A positive rotation turns the
    // rectangle counter-clockwise on a y-down page.
    std::vector<Vector> makePolygon() const;

    bool contains(const Vector& point) const;
    Rectangle boundingBox() const;
    // Walks the open outline: the edge from the last corner back to the
    // first is not part of the walk.
    Vector pointOnPerimeter(double t) const;

    // The shape as an SVG element with a black stroke (SVGElements.cpp).
    std::optional<XMLElement> svgElement() const;

    // The unrotated rectangle with its corner at centre minus half size.
    CGRect makeCGRect() const;
    // Fills, then strokes, with the context's current colours and width.
    // The rotation's degrees are handed to the context as radians and turn
    // about the user-space origin, not the centre; drawing relies on this.
    void draw(CGContext& context) const;
};

}  // namespace vantel
