#include <Graphics2/Path.hpp>

#include <Graphics2/Polygon.hpp>
#include <Platform/Fatal.hpp>

#include <utility>

namespace vantel {

Path::Path(std::vector<Vector> points) : points(std::move(points)) {}
Path::Path(std::initializer_list<Vector> points) : points(points) {}

namespace {

// Values start + i × step (multiplied, not accumulated, so no drift) while
// keep(value) holds in the direction of the step.
Path stride(double start, double end, double step, bool includeEnd,
            const std::function<Vector(double)>& f) {
    if (step == 0) fatalError("Stride size must not be zero");
    auto beforeEnd = [&](double value) {
        if (step > 0) return includeEnd ? value <= end : value < end;
        return includeEnd ? value >= end : value > end;
    };
    Path path;
    for (double i = 0;; ++i) {
        const double value = start + i * step;
        if (!beforeEnd(value)) break;
        path.points.push_back(f(value));
    }
    return path;
}

}  // namespace

Path Path::strideFromTo(double start, double end, double step,
                        const std::function<Vector(double)>& f) {
    return stride(start, end, step, false, f);
}

Path Path::strideFromThrough(double start, double end, double step,
                             const std::function<Vector(double)>& f) {
    return stride(start, end, step, true, f);
}

bool Path::isEmpty() const { return points.empty(); }
double Path::length() const { return vantel::length(points); }
Rectangle Path::boundingBox() const { return vantel::boundingBox(points); }
Vector Path::pointOnPerimeter(double t) const { return vantel::lerp(points, t); }
Vector Path::lerp(double t) const { return pointOnPerimeter(t); }

}  // namespace vantel
