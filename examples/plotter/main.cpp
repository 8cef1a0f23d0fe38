// Draws a plotter sketch into an SVG document: a fan of Bezier curves in a
// fine pen and a circle broken into noisy runs in a broad one, each pen on
// its own Inkscape layer so that a plotter can swap pens between layers.
// Usage: plotter OUTPUT_FOLDER   (writes OUTPUT_FOLDER/SVG/plotter.svg)
#include <Graphics2/SVGContext.hpp>
#include <Graphics2/SVGElement.hpp>
#include <Graphics2/Shape.hpp>

#include <filesystem>
#include <iostream>

using namespace vantel;

namespace {

constexpr double finePen = 0.5;
constexpr double broadPen = 2.0;

void addCurves(SVGContext& context) {
    for (int i = 0; i < 12; ++i) {
        const double y = 40.0 + i * 15.0;
        BezierPath curve({Vector(20, y, 1), Vector(120, y - 60, 1), Vector(280, y + 60, 1), Vector(380, y, 1)});
        context.addShape(StyledShape{std::nullopt, std::nullopt, finePen, curve});
    }
}

// A circle's parameter 0...1 covers half a turn; this one starts later.
struct HalfCircle {
    Circle circle;
    double start;  // in half turns
    Vector pointOnPerimeter(double t) const { return circle.pointOnPerimeter(t + start); }
};

void addNoisyCircle(SVGContext& context) {
    for (double start : {0.0, 1.0}) {
        for (auto& run : randomSample(HalfCircle{Circle(200, 150, 100), start}, 0.005, 0.45)) {
            if (run.points.size() > 1) context.addShape(StyledShape{std::nullopt, std::nullopt, broadPen, run});
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: plotter OUTPUT_FOLDER\n";
        return 2;
    }
    SVGContext context(400, 300);
    addCurves(context);
    addNoisyCircle(context);
    context.groupElements(SVGAttribute::strokeWidth);
    try {
        context.writeSVG("plotter", URL::fileURL(argv[1], true), true);
    } catch (const std::filesystem::filesystem_error& error) {
        std::cerr << "plotter: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
