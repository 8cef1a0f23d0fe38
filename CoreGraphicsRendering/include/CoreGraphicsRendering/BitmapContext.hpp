#pragma once

#include <CoreGraphicsRendering/CairoContext.hpp>
#include <CoreGraphicsRendering/ImageView.hpp>

#include <cstdint>
#include <memory>

namespace vantel {

// An 8-bit RGBA bitmap of width x height pixels with a drawing context on it:
// origin at the top-left corner, y downward, one unit per pixel (cairo's own
// orientation, so no flip is applied). It starts fully transparent.
class BitmapContext {
public:
    // Throws RenderError::dimensionIsZero when a side is below 1 and
    // CairoError when cairo cannot make a bitmap that large.
    BitmapContext(std::int64_t width, std::int64_t height);

    BitmapContext(BitmapContext&&) noexcept = default;
    BitmapContext& operator=(BitmapContext&&) noexcept = default;
    ~BitmapContext() = default;

    int width() const { return width_; }
    int height() const { return height_; }
    CairoContext& context() { return context_; }
    const CairoContext& context() const { return context_; }

    // The pixels as they are now (pending drawing is flushed first). Valid
    // while this bitmap lives; later drawing shows through the view.
    ImageView image() const;
    // The cairo image surface holding the pixels, for drawing on it with
    // contexts of one's own (mark it dirty afterwards).
    cairo_surface_t* surface() const { return surface_.get(); }

private:
    struct Release {
        void operator()(cairo_surface_t* surface) const;
    };

    using Surface = std::unique_ptr<cairo_surface_t, Release>;
    static Surface makeSurface(std::int64_t width, std::int64_t height);
    BitmapContext(Surface surface, int width, int height);

    int width_;
    int height_;
    Surface surface_;
    CairoContext context_;
};

}  // namespace vantel
