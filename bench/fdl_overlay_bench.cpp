// A framing decision list against an overlay of the same size: both 8K
// (8192 x 4320) with ten framings, read from their bytes, checked and drawn
// into a bitmap the way `vantel render` draws them (on every core), so the
// two kinds of document can be compared stage by stage. Encoding the PNG
// is left out: it costs the same for both pictures. The drawing cases count
// the processor time of every thread, which a busy machine disturbs less
// than the wall clock.
//
// The list: ten decisions, each with a protection area, on one canvas with
// an effective area, as cameras write them. The overlay: ten guides of the
// same ratios side by side in the canvas less a margin as wide as the
// effective area's, with the stroke weight the chart uses.

#include <CoreGraphicsRendering/CoreGraphicsRenderer.hpp>
#include <FramingDecisions/FDLReading.hpp>
#include <FramingDecisions/FDLWriting.hpp>
#include <FramingDecisions/FrameLineChart.hpp>
#include <OverlayGenerator/DocumentCheck.hpp>
#include <OverlayGenerator/DocumentLoading.hpp>
#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/PropertyList.hpp>

#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace vantel;

constexpr double width = 8192, height = 4320;
const std::vector<std::pair<double, double>> ratios{{239, 100}, {185, 100}, {16, 9}, {3, 2}, {4, 3},
                                                    {5, 4},     {1, 1},     {4, 5}, {2, 3}, {9, 16}};

// The largest rectangle of the ratio inside the area, centred in it.
FDLRect fitted(double ratio, const FDLRect& area) {
    FDLDimensions size = ratio < area.size.width / area.size.height
                             ? FDLDimensions{area.size.height * ratio, area.size.height}
                             : FDLDimensions{area.size.width, area.size.width / ratio};
    return {{area.anchor.x + (area.size.width - size.width) / 2, area.anchor.y + (area.size.height - size.height) / 2},
            size};
}

Data listBytes() {
    FramingDecisionList list;
    list.uuid = "BCD142EB-3BAA-4EA8-ADD8-A46AE8DC4D97";
    list.version = {2, 0};
    FDLCanvas canvas;
    canvas.id = canvas.sourceCanvasID = "C8K";
    canvas.dimensions = {width, height};
    canvas.effectiveDimensions = FDLDimensions{width - 64, height - 64};
    canvas.effectiveAnchorPoint = FDLPoint{32, 32};
    for (std::size_t i = 0; i < ratios.size(); ++i) {
        auto [w, h] = ratios[i];
        std::string id = "I" + std::to_string(i);
        list.framingIntents.push_back({"", id, {w, h}, 0.05, {}});
        FDLRect protection = fitted(w / h, canvas.effectiveArea());
        FDLRect framing = fitted(w / h, {protection.anchor, {protection.size.width * 0.95, protection.size.height * 0.95}});
        framing.anchor = {protection.anchor.x + protection.size.width * 0.025,
                          protection.anchor.y + protection.size.height * 0.025};
        canvas.framingDecisions.push_back({"", canvas.id + "-" + id, id, framing.size, framing.anchor,
                                           protection.size, protection.anchor, {}});
    }
    list.contexts.push_back({"bench", "", std::nullopt, {canvas}, {}});
    return encodeFramingDecisionList(list);
}

Data overlayBytes() {
    const double weight = FrameLineChart::lineWidth({width, height});
    std::vector<AspectRatio> guides;
    for (auto [w, h] : ratios) {
        guides.emplace_back(w, h, Color::white(), Color::clear(), weight, GridType::none(), GridType::none(),
                            std::nullopt);
    }
    OverlayGen overlay(Size(width, height, 32), Color::clear(), std::move(guides));
    return PropertyListEncoder().encode(overlay);
}

const Data& bytesOf(bool list) {
    static const Data listed = listBytes();
    static const Data overlay = overlayBytes();
    return list ? listed : overlay;
}

FDLCanvas readAndCheckList(const Data& bytes) {
    FDLReadResult read = readFramingDecisionList(bytes);
    if (read.hasErrors()) throw std::runtime_error("the bench's list has errors: " + read.problems.front().text());
    return chosenCanvas(*read.document, {});
}

std::shared_ptr<OverlayGen> readAndCheckOverlay(const Data& bytes) {
    LoadedDocument loaded = loadDocument(DocumentSource::bytes(bytes, "bench.aspectratio"));
    if (!loaded.document || !checkDrawingCost(*loaded.document, {width, height}).empty()) {
        throw std::runtime_error("the bench's overlay does not pass its checks");
    }
    return loaded.document;
}

void listReadAndCheck(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(readAndCheckList(bytesOf(true)));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytesOf(true).size()));
}

void overlayReadAndCheck(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(readAndCheckOverlay(bytesOf(false)));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytesOf(false).size()));
}

void listReadCheckAndDraw(benchmark::State& state) {
    for (auto _ : state) {
        FrameLineChart chart(readAndCheckList(bytesOf(true)), {width, height});
        CoreGraphicsRenderer drawn(chart);
        benchmark::DoNotOptimize(&drawn);
    }
}

void overlayReadCheckAndDraw(benchmark::State& state) {
    for (auto _ : state) {
        std::shared_ptr<OverlayGen> overlay = readAndCheckOverlay(bytesOf(false));
        CoreGraphicsRenderer drawn(*overlay);
        benchmark::DoNotOptimize(&drawn);
    }
}

}  // namespace

BENCHMARK(listReadAndCheck)->Unit(benchmark::kMicrosecond);
BENCHMARK(overlayReadAndCheck)->Unit(benchmark::kMicrosecond);
BENCHMARK(listReadCheckAndDraw)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(overlayReadCheckAndDraw)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
