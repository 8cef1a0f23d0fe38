#include <CoreGraphicsRendering/BitmapContext.hpp>

#include <CoreGraphicsRendering/RenderError.hpp>

#include <cairo.h>

#include <limits>

namespace vantel {

void BitmapContext::Release::operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }

BitmapContext::Surface BitmapContext::makeSurface(std::int64_t width, std::int64_t height) {
    if (width < 1 || height < 1) throw RenderError::dimensionIsZero(width, height);
    constexpr std::int64_t largest = std::numeric_limits<int>::max();
    if (width > largest || height > largest) throw CairoError(CAIRO_STATUS_INVALID_SIZE);
    // cairo reports failure through an error surface, never a null pointer.
    Surface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width), static_cast<int>(height)));
    cairo_status_t status = cairo_surface_status(surface.get());
    if (status != CAIRO_STATUS_SUCCESS) throw CairoError(status);
    return surface;
}

BitmapContext::BitmapContext(std::int64_t width, std::int64_t height)
    : BitmapContext(makeSurface(width, height), static_cast<int>(width), static_cast<int>(height)) {}

BitmapContext::BitmapContext(Surface surface, int width, int height)
    : width_(width), height_(height), surface_(std::move(surface)),
      context_(CairoContext::onSurface(surface_.get())) {}

ImageView BitmapContext::image() const {
    cairo_surface_t* surface = surface_.get();
    cairo_surface_flush(surface);
    return ImageView{width_, height_, cairo_image_surface_get_stride(surface),
                     cairo_image_surface_get_data(surface)};
}

}  // namespace vantel
