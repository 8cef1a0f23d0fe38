// The stages of rendering a document, one case each, so that the share of
// every stage in a whole render can be read off side by side: decoding the
// property list, building the body, drawing it into a bitmap, encoding the
// bitmap as PNG, and the whole OverlayGen::render().
//
// Documents: the XML sample and the binary portrait example. The sample is
// drawn at 1920x1080 and, scaled by two (canvas, margin, weights and pixel
// grids together), at 3840x2160; the portrait at its own 1080x1350.

#include <CoreGraphicsRendering/BitmapContext.hpp>
#include <CoreGraphicsRendering/CoreGraphicsRenderer.hpp>
#include <CoreGraphicsRendering/ImageEncoding.hpp>
#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/FileIO.hpp>
#include <Platform/PropertyList.hpp>

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using vantel::AspectRatio;
using vantel::Data;
using vantel::GridType;
using vantel::OverlayGen;

enum Document { sampleXML, sampleXMLAt4K, portraitBinary };
const char* const documentNames[] = {"sample.aspectratio (XML) 1920x1080",
                                     "sample.aspectratio (XML) scaled to 3840x2160",
                                     "portrait-binary.aspectratio 1080x1350"};

std::filesystem::path examplePath(const char* name) {
    return std::filesystem::path(VANTEL_EXAMPLES_DIR) / name;
}

const Data& fileBytes(Document document) {
    static const Data sample = vantel::readData(examplePath("sample.aspectratio"));
    static const Data portrait = vantel::readData(examplePath("portrait-binary.aspectratio"));
    return document == portraitBinary ? portrait : sample;
}

// The same picture at k times the resolution: what bench/scale_document.py
// does to a file.
void scaleGuide(AspectRatio& guide, double k) {
    guide.weight *= k;
    for (GridType* grid : {&guide.rowType, &guide.columnType}) {
        if (grid->tag == GridType::Case::pixels) grid->payload = static_cast<std::int64_t>(grid->payload * k);
    }
    if (guide.children) {
        for (AspectRatio& child : *guide.children) scaleGuide(child, k);
    }
}

void scale(OverlayGen& overlay, double k) {
    vantel::Size size = overlay.size();
    overlay.setSize(vantel::Size(size.width * k, size.height * k, size.margin * k));
    std::vector<AspectRatio> ratios = overlay.ratios();
    for (AspectRatio& guide : ratios) scaleGuide(guide, k);
    overlay.setRatios(std::move(ratios));
}

OverlayGen decoded(Document document) {
    auto overlay = vantel::PropertyListDecoder().decode<OverlayGen>(fileBytes(document));
    if (document == sampleXMLAt4K) scale(overlay, 2);
    return overlay;
}

Document documentArgument(const benchmark::State& state) { return static_cast<Document>(state.range(0)); }

void decodeDocument(benchmark::State& state) {
    const Document document = documentArgument(state);
    const Data& bytes = fileBytes(document);
    for (auto _ : state) {
        auto overlay = vantel::PropertyListDecoder().decode<OverlayGen>(bytes);
        benchmark::DoNotOptimize(&overlay);
    }
    state.SetLabel(documentNames[document]);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
}

void buildBody(benchmark::State& state) {
    const Document document = documentArgument(state);
    const OverlayGen overlay = decoded(document);
    for (auto _ : state) {
        vantel::Drawable body = overlay.body();
        benchmark::DoNotOptimize(&body);
    }
    state.SetLabel(documentNames[document]);
}

// A fresh bitmap each time, as a render makes one: allocating and clearing
// it is part of the cost.
void drawBody(benchmark::State& state) {
    const Document document = documentArgument(state);
    const OverlayGen overlay = decoded(document);
    const vantel::Drawable body = overlay.body();
    const vantel::Size size = overlay.size();
    for (auto _ : state) {
        vantel::BitmapContext bitmap(static_cast<std::int64_t>(size.width), static_cast<std::int64_t>(size.height));
        body.draw(bitmap.context());
        benchmark::DoNotOptimize(bitmap.image().pixels);
    }
    state.SetLabel(documentNames[document]);
}

void encodeDrawnBody(benchmark::State& state) {
    const Document document = documentArgument(state);
    const OverlayGen overlay = decoded(document);
    vantel::CoreGraphicsRenderer renderer(overlay);
    std::size_t size = 0;
    for (auto _ : state) {
        Data png = renderer.render(vantel::NSBitmapImageFileType::png);
        size = png.size();
        benchmark::DoNotOptimize(png.data());
    }
    state.counters["bytes"] = static_cast<double>(size);
    state.SetLabel(documentNames[document]);
}

void renderDocument(benchmark::State& state) {
    const Document document = documentArgument(state);
    const OverlayGen overlay = decoded(document);
    for (auto _ : state) {
        Data png = overlay.render();
        benchmark::DoNotOptimize(png.data());
    }
    state.SetLabel(documentNames[document]);
}

void allDocuments(benchmark::internal::Benchmark* bench) {
    for (int document : {sampleXML, sampleXMLAt4K, portraitBinary}) bench->Arg(document);
    bench->ArgName("document");
}

}  // namespace

BENCHMARK(decodeDocument)->Arg(sampleXML)->Arg(portraitBinary)->ArgName("document")->Unit(benchmark::kMicrosecond);
BENCHMARK(buildBody)->Apply(allDocuments)->Unit(benchmark::kMicrosecond);
BENCHMARK(drawBody)->Apply(allDocuments)->Unit(benchmark::kMillisecond);
BENCHMARK(encodeDrawnBody)->Apply(allDocuments)->Unit(benchmark::kMillisecond);
BENCHMARK(renderDocument)->Apply(allDocuments)->Unit(benchmark::kMillisecond);
