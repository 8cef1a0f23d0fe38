#include <CoreGraphicsRendering/BandedDrawing.hpp>

#include "ParallelWork.hpp"

#include <cairo.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace vantel {

namespace {

// Bitmaps below this many pixels draw faster on one context than the bands'
// set-up costs. (Measured in bench/banded_drawing_bench.)
constexpr std::int64_t smallestBandedPicture = 1 << 20;
// Bytes of pixels per band: small enough that the band stays in the cache
// while every fill of the drawing passes over it, large enough that replaying
// the drawing per band costs little. On one core 200 translucent guides at
// 7680x4320 draw in about two thirds of one context's time with bands of
// 1 to 4 MiB; 256 KiB bands lose that to the replays again.
constexpr std::int64_t bandBytes = 2 << 20;

struct SurfaceRelease {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};

struct Band {
    int top;
    int rows;
};

Band band(const BitmapContext& bitmap, int bandRows, std::size_t index) {
    const int top = static_cast<int>(index) * bandRows;
    return {top, std::min(bandRows, bitmap.height() - top)};
}

// A context over rows [top, top + rows) of the bitmap's pixels, with page
// row `top` at its first row.
void drawBand(cairo_surface_t* whole, Band band, const Drawing& drawing) {
    const int stride = cairo_image_surface_get_stride(whole);
    unsigned char* rows = cairo_image_surface_get_data(whole) + static_cast<std::ptrdiff_t>(band.top) * stride;
    std::unique_ptr<cairo_surface_t, SurfaceRelease> surface(cairo_image_surface_create_for_data(
        rows, CAIRO_FORMAT_ARGB32, cairo_image_surface_get_width(whole), band.rows, stride));
    CairoContext context = CairoContext::onSurface(surface.get());
    context.translateCTM(0, -band.top);
    drawing(context);
    context.checkStatus();
    cairo_surface_flush(surface.get());
}

}  // namespace

void drawInBands(BitmapContext& bitmap, const Drawing& drawing, int bandRows, unsigned threads) {
    bandRows = std::max(bandRows, 1);
    cairo_surface_t* whole = bitmap.surface();
    cairo_surface_flush(whole);
    // cairo is told that the pixels changed behind its back, whatever happens.
    struct MarkDirty {
        cairo_surface_t* surface;
        ~MarkDirty() { cairo_surface_mark_dirty(surface); }
    } markDirty{whole};
    const auto bands = static_cast<std::size_t>((bitmap.height() + bandRows - 1) / bandRows);
    try {
        parallel::forEach(bands, threads,
                          [&](std::size_t index) { drawBand(whole, band(bitmap, bandRows, index), drawing); });
    } catch (const CairoError&) {
        drawing(bitmap.context());
    }
}

void drawOnAllCores(BitmapContext& bitmap, const Drawing& drawing) {
    const std::int64_t pixels = std::int64_t{bitmap.width()} * bitmap.height();
    if (pixels < smallestBandedPicture) {
        drawing(bitmap.context());
        return;
    }
    const std::int64_t rows = std::max<std::int64_t>(1, bandBytes / (4 * std::int64_t{bitmap.width()}));
    drawInBands(bitmap, drawing, static_cast<int>(std::min<std::int64_t>(rows, bitmap.height())),
                parallel::threadCount());
}

}  // namespace vantel
