#include <CoreGraphicsRendering/BitmapContext.hpp>

#include <CoreGraphicsRendering/RenderError.hpp>

#include "PictureMemory.hpp"

#include <cairo.h>

#include <memory>
#include <new>

namespace vantel {

namespace {

// cairo's own limit for the side of an image surface, checked before any
// memory is mapped for the pixels.
constexpr std::int64_t largestSide = 32767;

const cairo_user_data_key_t pixelsKey{};

void releasePixels(void* pixels) { delete static_cast<pictureMemory::Buffer*>(pixels); }

// The pixels of a large bitmap live in memory of their own (see
// PictureMemory.hpp), owned by the surface and released with it. Fresh pages
// are zero: transparent, as cairo's own bitmaps start.
cairo_surface_t* surfaceOnPictureMemory(int width, int height, int stride) {
    auto pixels = std::make_unique<pictureMemory::Buffer>();
    try {
        *pixels = pictureMemory::allocate(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height));
    } catch (const std::bad_alloc&) {
        throw CairoError(CAIRO_STATUS_NO_MEMORY);
    }
    cairo_surface_t* surface =
        cairo_image_surface_create_for_data(pixels->get(), CAIRO_FORMAT_ARGB32, width, height, stride);
    cairo_status_t status = cairo_surface_status(surface);
    if (status == CAIRO_STATUS_SUCCESS) {
        status = cairo_surface_set_user_data(surface, &pixelsKey, pixels.get(), releasePixels);
    }
    if (status != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);  // before its pixels go
        throw CairoError(status);
    }
    pixels.release();
    return surface;
}

}  // namespace

void BitmapContext::Release::operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }

BitmapContext::Surface BitmapContext::makeSurface(std::int64_t width, std::int64_t height) {
    if (width < 1 || height < 1) throw RenderError::dimensionIsZero(width, height);
    if (width > largestSide || height > largestSide) throw CairoError(CAIRO_STATUS_INVALID_SIZE);
    const int w = static_cast<int>(width), h = static_cast<int>(height);
    const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_ARGB32, w);
    const bool large = static_cast<std::size_t>(stride) * static_cast<std::size_t>(h) >= pictureMemory::hugePageSize;
    // cairo reports failure through an error surface, never a null pointer.
    Surface surface(large ? surfaceOnPictureMemory(w, h, stride)
                          : cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h));
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
