#pragma once

// The 2-D drawing target that raster drawables draw into: exactly the
// operations drawing needs, with the platform's defaults (black fill and
// stroke, line width 1). CoreGraphicsRendering implements it on cairo;
// tests implement it as a recorder.

#include <cmath>
#include <span>

namespace vantel {

struct CGRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    friend bool operator==(const CGRect&, const CGRect&) = default;
};

struct CGSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const CGSize&, const CGSize&) = default;
};

// The affine map (x, y) -> (a x + c y + tx, b x + d y + ty).
struct CGAffineTransform {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
    friend bool operator==(const CGAffineTransform&, const CGAffineTransform&) = default;
};

// Whether a dash pattern can be drawn: every length finite and not negative,
// and some length above zero. Contexts stroke solid for any other pattern.
inline bool isUsableDash(std::span<const double> lengths) {
    bool draws = false;
    for (double length : lengths) {
        if (!std::isfinite(length) || length < 0) return false;
        draws = draws || length > 0;
    }
    return draws;
}

class CGContext {
public:
    virtual ~CGContext() = default;

    virtual void saveGState() = 0;
    virtual void restoreGState() = 0;

    virtual void setStrokeColor(double red, double green, double blue, double alpha) = 0;
    virtual void setFillColor(double red, double green, double blue, double alpha) = 0;
    virtual void setLineWidth(double width) = 0;
    // Alternating on and off lengths of later strokes, in user space at the
    // moment of stroking, starting with a dash; none (the default) is solid.
    // Part of the saved state.
    virtual void setLineDash(std::span<const double> lengths) = 0;

    virtual void rotateCTM(double radians) = 0;
    virtual void translateCTM(double tx, double ty) = 0;
    virtual void scaleCTM(double sx, double sy) = 0;
    virtual void concatCTM(const CGAffineTransform& transform) = 0;

    virtual void moveTo(double x, double y) = 0;
    virtual void addLineTo(double x, double y) = 0;
    virtual void strokePath() = 0;  // strokes and clears the current path

    virtual void fillRect(const CGRect& rect) = 0;
    virtual void strokeRect(const CGRect& rect) = 0;
    virtual void clearRect(const CGRect& rect) = 0;  // to fully transparent
};

}  // namespace vantel
