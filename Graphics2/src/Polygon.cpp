#include <Graphics2/Polygon.hpp>

#include <cmath>
#include <limits>

namespace vantel {

double isLeft(const Vector& p0, const Vector& p1, const Vector& p2) {
    return (p1.x - p0.x) * (p2.y - p0.y) - (p2.x - p0.x) * (p1.y - p0.y);
}

namespace {

// The outline with its first point repeated at the end, so that the last
// edge closes it.
std::vector<Vector> closedOutline(const std::vector<Vector>& polygon) {
    std::vector<Vector> closed = polygon;
    if (closed.front() != closed.back()) closed.push_back(closed.front());
    return closed;
}

bool crossesUpward(const Vector& a, const Vector& b, const Vector& p) {
    return a.y <= p.y && p.y < b.y;
}

bool crossesDownward(const Vector& a, const Vector& b, const Vector& p) {
    return a.y > p.y && b.y <= p.y;
}

}  // namespace

bool crossingNumber(const Vector& point, const std::vector<Vector>& polygon) {
    if (polygon.size() < 3) return false;
    const std::vector<Vector> v = closedOutline(polygon);
    int count = 0;
    for (std::size_t i = 0; i + 1 < v.size(); ++i) {
        const Vector& a = v[i];
        const Vector& b = v[i + 1];
        if (!crossesUpward(a, b, point) && !crossesDownward(a, b, point)) continue;
        const double t = (point.y - b.y) / (b.y - a.y);
        if (point.x < a.x + t * (b.x - a.x)) ++count;
    }
    return count % 2 == 1;
}

bool windingNumber(const Vector& point, const std::vector<Vector>& polygon) {
    if (polygon.size() < 3) return false;
    const std::vector<Vector> v = closedOutline(polygon);
    int winding = 0;
    for (std::size_t i = 0; i + 1 < v.size(); ++i) {
        const Vector& a = v[i];
        const Vector& b = v[i + 1];
        if (a.y <= point.y) {
            if (point.y < b.y && isLeft(a, b, point) > 0) ++winding;
        } else if (b.y <= point.y && isLeft(a, b, point) < 0) {
            --winding;
        }
    }
    return winding != 0;
}

bool contains(const std::vector<Vector>& polygon, const Vector& point) {
    return windingNumber(point, polygon);
}

Rectangle boundingBox(const std::vector<Vector>& points) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double loX = infinity, loY = infinity;
    double hiX = 0, hiY = 0;
    for (const Vector& p : points) {
        loX = std::fmin(loX, p.x);
        loY = std::fmin(loY, p.y);
        hiX = std::fmax(hiX, p.x);
        hiY = std::fmax(hiY, p.y);
    }
    const double sizeX = hiX - loX;
    const double sizeY = hiY - loY;
    return Rectangle(Vector::point(loX + sizeX * 0.5, loY + sizeY * 0.5), sizeX, sizeY, Angle());
}

Vector pointOnPerimeter(const std::vector<Vector>& polygon, double t) { return lerp(polygon, t); }

}  // namespace vantel
