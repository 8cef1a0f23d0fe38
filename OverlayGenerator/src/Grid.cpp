#include <OverlayGenerator/Grid.hpp>

#include <Graphics2/Drawable.hpp>
#include <Graphics2/Line.hpp>
#include <Graphics2/Vector.hpp>
#include <Platform/Fatal.hpp>

#include <cmath>

namespace vantel {

namespace {

// step, 2 step, 3 step, ... while the value stays on the near side of `end`.
std::vector<double> stride(double step, double end) {
    std::vector<double> offsets;
    auto before = [&](double value) { return step > 0 ? value < end : value > end; };
    for (double i = 0;; ++i) {
        double value = std::fma(i, step, step);
        if (!before(value)) break;
        offsets.push_back(value);
    }
    return offsets;
}

std::vector<double> pixelOffsets(std::int64_t n, double length) {
    if (n < 1) return {};
    auto step = static_cast<double>(n);
    if (step >= length) return {};
    return stride(step, length);
}

std::vector<double> divisorOffsets(std::int64_t n, double length) {
    double step = length / static_cast<double>(n);
    if (step == 0) fatalError("Grid step is zero: a divisor grid on a side of length 0");
    if (!(step > 0) && !(step < 0)) return {};  // NaN: no direction to walk
    return stride(step, length);
}

std::vector<Vector> corners(const Rectangle& rect) {
    std::vector<Vector> points = rect.points();
    if (points.size() < 4) fatalError("A grid needs a rectangle with four corners");
    return points;
}

}  // namespace

std::vector<double> gridOffsets(const GridType& type, double length) {
    switch (type.tag) {
        case GridType::Case::none: return {};
        case GridType::Case::pixels: return pixelOffsets(type.payload, length);
        case GridType::Case::divisor: return divisorOffsets(type.payload, length);
    }
    return {};
}

void Grid::draw(DrawingContext& context) const {
    std::vector<Vector> pts = corners(baseRect);
    for (double offset : gridOffsets(rowType, baseRect.height)) {
        Drawable(Line(pts[0].x, offset, pts[1].x, offset)).draw(context);
    }
    for (double offset : gridOffsets(columnType, baseRect.width)) {
        Drawable(Line(offset, pts[0].y, offset, pts[3].y)).draw(context);
    }
    Drawable(baseRect).draw(context);
}

void Grid::draw(CGContext& context) const {
    if (clearParent) context.clearRect(baseRect.makeCGRect());
    baseRect.draw(context);
    std::vector<Vector> pts = corners(baseRect);
    for (double offset : gridOffsets(rowType, baseRect.height)) {
        double y = pts[0].y + offset;
        Line(pts[0].x, y, pts[1].x, y).draw(context);
    }
    for (double offset : gridOffsets(columnType, baseRect.width)) {
        double x = pts[0].x + offset;
        Line(x, pts[0].y, x, pts[3].y).draw(context);
    }
}

}  // namespace vantel
