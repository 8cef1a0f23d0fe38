// PNG encoding at HD and 4K across zlib levels, for three pictures:
// an overlay on an opaque background (large flat areas, a few guides and
// grid lines), the same overlay on a clear canvas (translucent fills give
// partly transparent pixels: the slower un-premultiply path), and a busy
// picture (a dense grid and rotated translucent rectangles) that shows what
// the higher levels cost when there is more to compress.
// Counter "bytes": the encoded size.

#include <CoreGraphicsRendering/BitmapContext.hpp>
#include <CoreGraphicsRendering/ImageEncoding.hpp>

#include <benchmark/benchmark.h>

namespace {

using vantel::BitmapContext;
using vantel::CGRect;

enum Picture { overlayOnClear, overlayOnOpaque, busy };
const char* const pictureNames[] = {"overlay, clear background", "overlay, opaque background", "busy"};

void guide(vantel::CGContext& context, double cx, double cy, double width, double height, double weight,
           int divisions) {
    context.setLineWidth(weight);
    const CGRect frame{cx - width / 2, cy - height / 2, width, height};
    context.fillRect(frame);
    context.strokeRect(frame);
    for (int i = 1; i < divisions; ++i) {
        double x = frame.x + width * i / divisions, y = frame.y + height * i / divisions;
        context.moveTo(x, frame.y);
        context.addLineTo(x, frame.y + height);
        context.moveTo(frame.x, y);
        context.addLineTo(frame.x + width, y);
    }
    context.strokePath();
}

void drawOverlay(vantel::CGContext& context, int width, int height, bool opaqueBackground) {
    const double unit = width / 1920.0;
    if (opaqueBackground) {
        context.setFillColor(0.12, 0.12, 0.14, 1);
        context.fillRect(CGRect{0, 0, double(width), double(height)});
    }
    context.setStrokeColor(0.55, 0.83, 0.78, 1);
    context.setFillColor(0.16, 0.17, 0.2, 0.6);
    guide(context, width / 2.0, height / 2.0, width - 80 * unit, (width - 80 * unit) * 9 / 16, 6 * unit, 3);
    context.setStrokeColor(0.98, 0.5, 0.45, 1);
    context.setFillColor(0.98, 0.5, 0.45, 0.25);
    guide(context, width / 2.0, height / 2.0, (height - 80 * unit) * 4 / 3, height - 80 * unit, 4 * unit, 4);
    context.setStrokeColor(0.99, 0.9, 0.3, 1);
    context.setFillColor(0, 0, 0, 0);
    guide(context, width / 2.0, height / 2.0, height / 2.0, height / 2.0, 2 * unit, 2);
}

void drawBusy(vantel::CGContext& context, int width, int height) {
    context.setFillColor(0.1, 0.1, 0.12, 1);
    context.fillRect(CGRect{0, 0, double(width), double(height)});
    context.setStrokeColor(0.5, 0.8, 0.7, 1);
    context.setLineWidth(1.5);
    for (int x = 0; x < width; x += 25) {
        context.moveTo(x + 0.3, 0);
        context.addLineTo(x + 0.3, height);
    }
    for (int y = 0; y < height; y += 25) {
        context.moveTo(0, y + 0.3);
        context.addLineTo(width, y + 0.3);
    }
    context.strokePath();
    context.setLineWidth(3);
    for (int i = 0; i < 40; ++i) {
        context.saveGState();
        context.setFillColor(i / 40.0, 0.3, 1 - i / 40.0, 0.3);
        context.setStrokeColor(1, i / 40.0, 0.2, 1);
        context.translateCTM(width / 2.0, height / 2.0);
        context.rotateCTM(i * 0.157);
        const CGRect rect{-width / 4.0 + i * 5, -height / 4.0, width / 3.0, height / 5.0};
        context.fillRect(rect);
        context.strokeRect(rect);
        context.restoreGState();
    }
}

BitmapContext picture(int width, int height, Picture kind) {
    BitmapContext bitmap(width, height);
    if (kind == busy) {
        drawBusy(bitmap.context(), width, height);
    } else {
        drawOverlay(bitmap.context(), width, height, kind == overlayOnOpaque);
    }
    bitmap.context().checkStatus();
    return bitmap;
}

void encodePNG(benchmark::State& state) {
    const auto width = static_cast<int>(state.range(0)), height = static_cast<int>(state.range(1));
    const auto kind = static_cast<Picture>(state.range(2));
    const auto level = static_cast<int>(state.range(3));
    BitmapContext bitmap = picture(width, height, kind);
    std::size_t size = 0;
    for (auto _ : state) {
        vantel::Data png = vantel::encodePNG(bitmap.image(), level);
        size = png.size();
        benchmark::DoNotOptimize(png.data());
    }
    state.counters["bytes"] = static_cast<double>(size);
    state.SetLabel(pictureNames[kind]);
}

// Drawing the overlay, for the share that encoding takes of a render.
void drawOverlayPicture(benchmark::State& state) {
    for (auto _ : state) {
        BitmapContext bitmap = picture(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                                       overlayOnOpaque);
        benchmark::DoNotOptimize(bitmap.image().pixels);
    }
}

void sizesPicturesAndLevels(benchmark::internal::Benchmark* bench) {
    for (auto [width, height] : {std::pair{1920, 1080}, std::pair{3840, 2160}})
        for (int kind : {overlayOnOpaque, overlayOnClear, busy})
            for (int level : {1, 2, 3, 4, 6, 9}) bench->Args({width, height, kind, level});
}

}  // namespace

BENCHMARK(encodePNG)
    ->Apply(sizesPicturesAndLevels)
    ->ArgNames({"w", "h", "picture", "level"})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(drawOverlayPicture)->Args({1920, 1080})->Args({3840, 2160})->Unit(benchmark::kMillisecond);
