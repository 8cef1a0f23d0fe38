// The generative half of Graphics2: one noise value, and a whole SVG
// document of many shapes built and serialised.
#include <Graphics2/PerlinGenerator.hpp>
#include <Graphics2/SVGContext.hpp>
#include <Graphics2/SVGElement.hpp>

#include <benchmark/benchmark.h>

namespace {

void BM_PerlinNoise(benchmark::State& state) {
    vantel::PerlinGenerator generator;
    double x = 0.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(generator.noise(x, 0.37 * x, 1.5));
        x += 0.013;
    }
}
BENCHMARK(BM_PerlinNoise);

// Circles, lines and styled rectangles in turn, grouped into layers by
// stroke width the way a plotter file is, then pretty printed.
void BM_SVGDocument(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        vantel::SVGContext context(1000, 1000);
        for (int i = 0; i < count; ++i) {
            const double p = i % 1000;
            switch (i % 3) {
            case 0: context.addShape(vantel::Circle(p, p / 2, 5)); break;
            case 1: context.addShape(vantel::Line(p, 0, 0, p)); break;
            default:
                context.addShape(vantel::StyledShape{std::nullopt, std::nullopt, 1.0 + i % 4,
                                                     vantel::Rectangle(vantel::Vector(p, p, 1), 10, 20, vantel::Angle())});
            }
        }
        context.groupElements(vantel::SVGAttribute::strokeWidth);
        benchmark::DoNotOptimize(context.svgString(true));
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_SVGDocument)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
