#include <OverlayGenerator/Grid.hpp>

#include <Graphics2/Drawable.hpp>
#include <Graphics2/Line.hpp>
#include <Graphics2/Vector.hpp>
#include <Platform/Fatal.hpp>

#include <algorithm>
#include <cmath>
#include <optional>

namespace vantel {

namespace {

// Past this many lines adding one to a count no longer changes it.
constexpr double exactCountLimit = 4503599627370496.0;  // 2^52

// The distance between neighbouring lines; none where the grid has no lines.
std::optional<double> stepOf(const GridType& type, double length) {
    auto n = static_cast<double>(type.payload);
    switch (type.tag) {
        case GridType::Case::none: return std::nullopt;
        case GridType::Case::pixels:
            if (type.payload < 1 || n >= length) return std::nullopt;
            return n;
        case GridType::Case::divisor:
            if (gridStepIsZero(type, length)) fatalError("Grid step is zero: a divisor grid on a side of length 0");
            if (std::isnan(length / n)) return std::nullopt;  // no direction to walk
            return length / n;
    }
    return std::nullopt;
}

// The i-th line lies at step + i step, computed as one fused multiply-add.
double offsetAt(double i, double step) { return std::fma(i, step, step); }

// Whether an offset lies on the near side of the far edge.
bool beforeEnd(double offset, double step, double end) { return step > 0 ? offset < end : offset > end; }

// The offsets move one way only, so the first index past the far edge is an
// estimate corrected by single steps.
double countBeforeEnd(double step, double end) {
    double count = std::max(0.0, std::floor(end / step) - 1);
    if (!std::isfinite(count) || count > exactCountLimit) return count;
    while (beforeEnd(offsetAt(count, step), step, end)) ++count;
    while (count > 0 && !beforeEnd(offsetAt(count - 1, step), step, end)) --count;
    return count;
}

std::vector<Vector> corners(const Rectangle& rect) {
    std::vector<Vector> points = rect.points();
    if (points.size() < 4) fatalError("A grid needs a rectangle with four corners");
    return points;
}

}  // namespace

bool gridStepIsZero(const GridType& type, double length) {
    return type.tag == GridType::Case::divisor && length / static_cast<double>(type.payload) == 0;
}

double gridLineCount(const GridType& type, double length) {
    std::optional<double> step = stepOf(type, length);
    return step ? countBeforeEnd(*step, length) : 0;
}

std::vector<double> gridOffsets(const GridType& type, double length) {
    std::optional<double> step = stepOf(type, length);
    if (!step) return {};
    double count = countBeforeEnd(*step, length);
    if (!std::isfinite(count)) fatalError("A grid on an endless side would draw endless lines");
    std::vector<double> offsets;
    for (double i = 0; i < count; ++i) offsets.push_back(offsetAt(i, *step));
    return offsets;
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
