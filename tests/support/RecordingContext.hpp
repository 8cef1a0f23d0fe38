#pragma once

#include <Graphics2/CGContext.hpp>
#include <Graphics2/Size.hpp>
#include <Graphics2/Sketch.hpp>
#include <Platform/NumberText.hpp>

#include <string>
#include <vector>

namespace vantel::testing {

// A CGContext that writes down every operation, in order, as one short line
// each ("fillRect 40.0 45.0 20.0 10.0"), so tests can check exact sequences.
class RecordingContext : public CGContext {
public:
    std::vector<std::string> operations;

    void saveGState() override { record("save"); }
    void restoreGState() override { record("restore"); }
    void setStrokeColor(double r, double g, double b, double a) override { record("strokeColor", {r, g, b, a}); }
    void setFillColor(double r, double g, double b, double a) override { record("fillColor", {r, g, b, a}); }
    void setLineWidth(double width) override { record("lineWidth", {width}); }
    void setLineDash(std::span<const double> lengths) override {
        record("lineDash");
        for (double length : lengths) operations.back() += " " + numberText(length);
    }
    void rotateCTM(double radians) override { record("rotate", {radians}); }
    void translateCTM(double tx, double ty) override { record("translate", {tx, ty}); }
    void scaleCTM(double sx, double sy) override { record("scale", {sx, sy}); }
    void concatCTM(const CGAffineTransform& t) override { record("concat", {t.a, t.b, t.c, t.d, t.tx, t.ty}); }
    void moveTo(double x, double y) override { record("moveTo", {x, y}); }
    void addLineTo(double x, double y) override { record("lineTo", {x, y}); }
    void strokePath() override { record("strokePath"); }
    void fillRect(const CGRect& r) override { record("fillRect", {r.x, r.y, r.width, r.height}); }
    void strokeRect(const CGRect& r) override { record("strokeRect", {r.x, r.y, r.width, r.height}); }
    void clearRect(const CGRect& r) override { record("clearRect", {r.x, r.y, r.width, r.height}); }

private:
    void record(const std::string& name, std::initializer_list<double> values = {}) {
        std::string line = name;
        for (double v : values) line += " " + numberText(v);
        operations.push_back(line);
    }
};

// What the raster drawing of `drawable` does, one line per operation.
inline std::vector<std::string> rasterOperations(const Drawable& drawable) {
    RecordingContext context;
    drawable.draw(context);
    return context.operations;
}

// Any page size with any body, for code that takes a sketch.
struct PageSketch : Sketch {
    Size page;
    Drawable content;
    explicit PageSketch(Size page, Drawable content = {}) : page(page), content(std::move(content)) {}
    Size size() const override { return page; }
    Drawable body() const override { return content; }
};

}  // namespace vantel::testing
