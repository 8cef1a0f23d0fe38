#pragma once

#include <CoreGraphicsRendering/ImageView.hpp>
#include <Graphics2/CGContext.hpp>

#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

// cairo's opaque handles, declared as cairo.h declares them, so that users of
// this header need not see cairo's headers.
typedef struct _cairo cairo_t;
typedef struct _cairo_surface cairo_surface_t;
typedef struct _cairo_matrix cairo_matrix_t;

namespace vantel {

// A cairo drawing error. cairo's errors are sticky: the first one stops all
// later drawing on that context, so it is checked once at the end.
class CairoError : public std::runtime_error {
public:
    explicit CairoError(int status);
    int status;  // a cairo_status_t
};

// The drawing target of raster drawables on cairo, behaving like the
// platform's context: separate stroke and fill colours saved and restored with
// the rest of the state, black fill and stroke, line width 1. Move-only; owns
// one reference to its cairo_t.
//
// A transform that is not finite or not invertible (a NaN rotation, a zero
// scale) would put cairo into its sticky error and lose the whole picture, so
// it is not applied: nothing is drawn until the state is restored, which skips
// the one shape that asked for it. A path or rectangle with a coordinate that
// is not finite is skipped the same way.
class CairoContext final : public CGContext {
public:
    // Takes a reference of its own: the caller keeps (and releases) theirs.
    explicit CairoContext(cairo_t* cairo);
    // A new cairo_t drawing onto `surface`.
    static CairoContext onSurface(cairo_surface_t* surface);

    CairoContext(CairoContext&&) noexcept = default;
    CairoContext& operator=(CairoContext&&) noexcept = default;
    ~CairoContext() override = default;

    cairo_t* cairo() const { return cairo_.get(); }
    // Throws CairoError if any drawing so far has failed.
    void checkStatus() const;
    // The pixels drawn so far when the target is an ARGB32 image surface (a
    // bitmap); none for PDF pages, windows and other targets.
    std::optional<ImageView> targetImage() const;

    void saveGState() override;
    void restoreGState() override;

    void setStrokeColor(double red, double green, double blue, double alpha) override;
    void setFillColor(double red, double green, double blue, double alpha) override;
    void setLineWidth(double width) override;
    // A pattern cairo would refuse (a negative or not finite length, or no
    // length above zero) strokes solid instead of stopping all drawing.
    void setLineDash(std::span<const double> lengths) override;

    void rotateCTM(double radians) override;
    void translateCTM(double tx, double ty) override;
    void scaleCTM(double sx, double sy) override;
    void concatCTM(const CGAffineTransform& transform) override;

    void moveTo(double x, double y) override;
    void addLineTo(double x, double y) override;
    void strokePath() override;

    void fillRect(const CGRect& rect) override;
    void strokeRect(const CGRect& rect) override;
    void clearRect(const CGRect& rect) override;

    // Lays everything drawn so far onto an opaque colour, over the whole
    // target whatever the transform and clip: a flattened picture, without
    // one transparent pixel.
    void paintBehind(double red, double green, double blue);

private:
    struct RGBA {
        double red = 0, green = 0, blue = 0, alpha = 1;
    };
    // cairo has a single source; the two colours live here instead, and
    // are saved and restored beside cairo's own state.
    struct PaintState {
        RGBA stroke;
        RGBA fill;
        bool transformUnusable = false;  // draw nothing until restored
    };
    struct Release {
        void operator()(cairo_t* cairo) const;
    };

    CairoContext(cairo_t* cairo, bool adopt);
    void setSource(const RGBA& colour);
    // False, and nothing drawn until the state is restored, when multiplying
    // `step` onto the transform would leave it unusable.
    bool acceptsTransform(const cairo_matrix_t& step);
    // Adds the rectangle as the whole path; false when it cannot be drawn.
    bool addRectangle(const CGRect& rect);

    std::unique_ptr<cairo_t, Release> cairo_;
    PaintState paint_;
    std::vector<PaintState> savedPaint_;
    bool pathUnusable_ = false;  // a point of the current path was not finite
};

}  // namespace vantel
