// Drawing one large document into one bitmap: on a single context, and in
// bands of several heights on one thread and on every core. The band height
// and the picture size from which banding pays were chosen here.
//
// Documents: the two large scenes of bench/guide_scenes.py (written into the
// build folder when this benchmark is built), 3840x2160 with ten gridded
// guides and 7680x4320 with 200 overlapping translucent guides.

#include <CoreGraphicsRendering/BandedDrawing.hpp>
#include <CoreGraphicsRendering/BitmapContext.hpp>
#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/FileIO.hpp>
#include <Platform/PropertyList.hpp>

#include <benchmark/benchmark.h>

#include <filesystem>
#include <thread>

namespace {

using vantel::OverlayGen;

enum Scene { gridded4K, translucent8K };
const char* const sceneFiles[] = {"gridded.aspectratio", "translucent.aspectratio"};

const OverlayGen& scene(Scene which) {
    static const auto load = [](Scene s) {
        return vantel::PropertyListDecoder().decode<OverlayGen>(
            vantel::readData(std::filesystem::path(VANTEL_BENCH_SCENES_DIR) / sceneFiles[s]));
    };
    static const OverlayGen gridded = load(gridded4K), translucent = load(translucent8K);
    return which == gridded4K ? gridded : translucent;
}

vantel::BitmapContext freshBitmap(const OverlayGen& document) {
    return vantel::BitmapContext(static_cast<std::int64_t>(document.size().width),
                                 static_cast<std::int64_t>(document.size().height));
}

void oneContext(benchmark::State& state) {
    const OverlayGen& document = scene(static_cast<Scene>(state.range(0)));
    const vantel::Drawable body = document.body();
    for (auto _ : state) {
        vantel::BitmapContext bitmap = freshBitmap(document);
        body.draw(bitmap.context());
        benchmark::DoNotOptimize(bitmap.image().pixels);
    }
    state.SetLabel(sceneFiles[state.range(0)]);
}

// range(1): rows per band; range(2): threads (0 for every core).
void bands(benchmark::State& state) {
    const OverlayGen& document = scene(static_cast<Scene>(state.range(0)));
    const vantel::Drawable body = document.body();
    const auto threads = state.range(2) > 0 ? static_cast<unsigned>(state.range(2))
                                            : std::max(1u, std::thread::hardware_concurrency());
    for (auto _ : state) {
        vantel::BitmapContext bitmap = freshBitmap(document);
        vantel::drawInBands(bitmap, [&](vantel::CGContext& context) { body.draw(context); },
                            static_cast<int>(state.range(1)), threads);
        benchmark::DoNotOptimize(bitmap.image().pixels);
    }
    state.SetLabel(sceneFiles[state.range(0)]);
}

void allCores(benchmark::State& state) {
    const OverlayGen& document = scene(static_cast<Scene>(state.range(0)));
    const vantel::Drawable body = document.body();
    for (auto _ : state) {
        vantel::BitmapContext bitmap = freshBitmap(document);
        vantel::drawOnAllCores(bitmap, [&](vantel::CGContext& context) { body.draw(context); });
        benchmark::DoNotOptimize(bitmap.image().pixels);
    }
    state.SetLabel(sceneFiles[state.range(0)]);
}

void bandChoices(benchmark::internal::Benchmark* bench) {
    for (int scene : {gridded4K, translucent8K}) {
        for (int rows : {8, 32, 128, 512}) {
            for (int threads : {1, 0}) bench->Args({scene, rows, threads});
        }
    }
    bench->ArgNames({"scene", "rows", "threads"});
}

}  // namespace

BENCHMARK(oneContext)->Arg(gridded4K)->Arg(translucent8K)->ArgName("scene")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(bands)->Apply(bandChoices)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(allCores)->Arg(gridded4K)->Arg(translucent8K)->ArgName("scene")->Unit(benchmark::kMillisecond)->UseRealTime();
