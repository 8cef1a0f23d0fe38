#include <Graphics2/Rectangle.hpp>

#include <Graphics2/MatrixTransformation.hpp>
#include <Graphics2/Polygon.hpp>
#include <Graphics2/Size.hpp>

namespace vantel {

Rectangle::Rectangle(const Vector& center, double width, double height, Angle rotation)
    : origin(center), width(width), height(height), rotation(rotation) {}

Rectangle Rectangle::centerX(double centerX, double y, double width, double height, Angle rotation) {
    return Rectangle(Vector::point(centerX, y), width, height, rotation);
}

Rectangle::Rectangle(const Size& size, Angle rotation)
    : Rectangle(Vector::point(size.width * 0.5, size.height * 0.5), size.width, size.height,
                rotation) {}

std::vector<Vector> Rectangle::points() const { return makePolygon(); }

std::vector<Vector> Rectangle::makePolygon() const {
    const double hw = width * 0.5;
    const double hh = height * 0.5;
    const Matrix3 place =
        MatrixTransformation::translate(origin.x, origin.y) * MatrixTransformation::rotate(rotation);
    std::vector<Vector> corners;
    for (const Vector& local : {Vector(-hw, -hh, 1), Vector(hw, -hh, 1), Vector(hw, hh, 1),
                                Vector(-hw, hh, 1)}) {
        corners.push_back(place * local);
    }
    return corners;
}

bool Rectangle::contains(const Vector& point) const { return vantel::contains(points(), point); }
Rectangle Rectangle::boundingBox() const { return vantel::boundingBox(points()); }
Vector Rectangle::pointOnPerimeter(double t) const { return vantel::pointOnPerimeter(points(), t); }

CGRect Rectangle::makeCGRect() const {
    const Vector corner(-0.5 * width, -0.5 * height, 1, MatrixTransformation::translate(origin));
    return {corner.x, corner.y, width, height};
}

void Rectangle::draw(CGContext& context) const {
    const CGRect rect = makeCGRect();
    context.saveGState();
    context.rotateCTM(rotation.degrees);  // degrees where radians are expected, on purpose
    context.fillRect(rect);
    context.strokeRect(rect);
    context.restoreGState();
}

}  // namespace vantel
