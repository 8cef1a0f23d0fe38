#include <Graphics2/Circle.hpp>

#include <cmath>
#include <numbers>

namespace vantel {

Circle::Circle(const Vector& center, double radius) : radius(radius), center(center) {}
Circle::Circle(double x, double y, double radius) : Circle(Vector::point(x, y), radius) {}

double Circle::diameter() const { return 2 * radius; }

Vector Circle::pointAt(Angle angle) const {
    return Vector::point(center.x + radius * std::cos(angle.radians),
                         center.y + radius * std::sin(angle.radians));
}

Vector Circle::pointOnPerimeter(double t) const {
    return pointAt(Angle::fromRadians(t * std::numbers::pi));
}

Rectangle Circle::boundingBox() const { return Rectangle(center, 2 * radius, 2 * radius, Angle()); }

}  // namespace vantel
