#include <Graphics2/Line.hpp>

#include <cmath>

namespace vantel {

Line::Line(const Vector& start, const Vector& end) : start(start), end(end) {}
Line::Line(double x1, double y1, double x2, double y2)
    : start(Vector::point(x1, y1)), end(Vector::point(x2, y2)) {}

double Line::length() const { return start.dist(end); }

Vector Line::center() const {
    return Vector::point((start.x + end.x) * 0.5, (start.y + end.y) * 0.5);
}

bool Line::contains(const Vector& p) const {
    const Vector onRay = start + (end - start) * (start.distance(p) / length());
    return onRay == p;
}

Vector Line::normal() const {
    const Vector direction = (end - start).normalized();
    return Vector(-direction.y, direction.x, 1);
}

double Line::slope() const { return (end.y - start.y) / (end.x - start.x); }

Angle Line::angle() const { return Angle::fromRadians(std::atan(slope())); }

Vector Line::pointAt(double d) const { return start + (end - start).normalized() * d; }

Vector Line::pointOnPerimeter(double t) const { return Vector::lerp(t, start, end); }
Vector Line::lerp(double t) const { return pointOnPerimeter(t); }

void Line::draw(CGContext& context) const {
    context.moveTo(start.x, start.y);
    context.addLineTo(end.x, end.y);
    context.strokePath();
}

}  // namespace vantel
