#include <Graphics2/Vector.hpp>

#include <Graphics2/Paired.hpp>
#include <Platform/Fatal.hpp>
#include <Platform/NumberText.hpp>

#include <cmath>

namespace vantel {

Vector::Vector(double x, double y, double z) : x(x), y(y), z(z) {}

Vector::Vector(double x, double y, double z, const Matrix3& m) {
    const auto& c = m.columns;
    this->x = c[0][0] * x + c[1][0] * y + c[2][0] * z;
    this->y = c[0][1] * x + c[1][1] * y + c[2][1] * z;
    this->z = c[0][2] * x + c[1][2] * y + c[2][2] * z;
}

Vector Vector::point(double x, double y) { return {x, y, 1}; }

Vector Vector::lerp(double percent, const Vector& start, const Vector& end) {
    return start + (end - start) * percent;
}

double Vector::magSq() const { return (x * x + y * y) + z * z; }
double Vector::lengthSquared() const { return magSq(); }
double Vector::mag() const { return std::sqrt(magSq()); }
double Vector::length() const { return mag(); }
double Vector::dist(const Vector& other) const { return (other - *this).mag(); }
double Vector::distance(const Vector& other) const { return dist(other); }
double Vector::distSquared(const Vector& other) const { return (other - *this).lengthSquared(); }
double Vector::distanceSquared(const Vector& other) const { return distSquared(other); }

Vector Vector::normalized() const { return *this * (1 / mag()); }
void Vector::normalize() { *this = normalized(); }

double Vector::dot(const Vector& o) const { return x * o.x + y * o.y + z * o.z; }

Vector Vector::cross(const Vector& o) const {
    return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
}

// The same product through lane rotations (yzx, zxy), as a vector unit would.
Vector Vector::cross2(const Vector& o) const {
    const Vector a1(y, z, x), b1(o.z, o.x, o.y);
    const Vector a2(z, x, y), b2(o.y, o.z, o.x);
    return {a1.x * b1.x - a2.x * b2.x, a1.y * b1.y - a2.y * b2.y, a1.z * b1.z - a2.z * b2.z};
}

namespace {
double laneSign(double lane) {
    if (lane == 0 || std::isnan(lane)) return 0;
    return std::copysign(1.0, lane);
}
}  // namespace

Vector Vector::sign() const { return {laneSign(x), laneSign(y), laneSign(z)}; }

Angle Vector::heading() const { return Angle::fromRadians(std::atan2(y, x)); }

void Vector::rotateTo(Angle angle) {
    x = std::cos(angle.radians) * mag();
    y = std::sin(angle.radians) * mag();  // mag() already sees the new x
}

void Vector::rotateBy(Angle angle) {
    rotateTo(Angle::fromRadians(std::atan2(y, x) + angle.radians));
}

void Vector::matrixRotate(Angle angle) {
    // Row vector times matrix: lane c is the dot product with column c.
    const auto& c = MatrixTransformation::rotate(angle).columns;
    *this = Vector(x * c[0][0] + y * c[0][1] + z * c[0][2],
                   x * c[1][0] + y * c[1][1] + z * c[1][2],
                   x * c[2][0] + y * c[2][1] + z * c[2][2]);
}

void Vector::rotateBy(Angle angle, const Vector& around) {
    *this -= around;
    matrixRotate(angle);
    *this += around;
}

std::string Vector::description() const {
    return "Vector (" + numberText(x) + ", " + numberText(y) + ", " + numberText(z) + ")";
}

Vector& Vector::operator+=(const Vector& o) {
    x += o.x, y += o.y, z += o.z;
    return *this;
}
Vector& Vector::operator-=(const Vector& o) {
    x -= o.x, y -= o.y, z -= o.z;
    return *this;
}
Vector& Vector::operator+=(double s) {
    x += s, y += s, z += s;
    return *this;
}
Vector& Vector::operator-=(double s) {
    x -= s, y -= s, z -= s;
    return *this;
}
Vector& Vector::operator*=(double s) {
    x *= s, y *= s, z *= s;
    return *this;
}
Vector& Vector::operator/=(double s) {
    x /= s, y /= s, z /= s;
    return *this;
}

Vector operator+(Vector a, const Vector& b) { return a += b; }
Vector operator-(Vector a, const Vector& b) { return a -= b; }
Vector operator+(Vector a, double s) { return a += s; }
Vector operator-(Vector a, double s) { return a -= s; }
Vector operator*(Vector a, double s) { return a *= s; }
Vector operator*(double s, Vector a) { return a *= s; }
Vector operator/(Vector a, double s) { return a /= s; }
Vector operator/(double s, const Vector& a) { return {s / a.x, s / a.y, s / a.z}; }
double operator*(const Vector& a, const Vector& b) { return a.dot(b); }
Vector operator-(const Vector& a) { return {0 - a.x, 0 - a.y, 0 - a.z}; }

double length(const std::vector<Vector>& points) {
    double total = 0;
    paired(points, [&](const Vector& a, const Vector& b) { total += a.dist(b); });
    return total;
}

Vector lerp(const std::vector<Vector>& points, double percent) {
    if (points.empty()) fatalError("Cannot walk an empty point list: it has no last point");
    const double target = length(points) * percent;
    double walked = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const Vector& a = points[i - 1];
        const Vector& b = points[i];
        const double segment = a.distance(b);
        if (walked + segment < target) {
            walked += segment;
            continue;
        }
        return Vector::lerp((target - walked) / segment, a, b);
    }
    return points.back();
}

}  // namespace vantel
