#include "FDLDrawing.hpp"

#include <CoreGraphicsRendering/CoreGraphicsRenderer.hpp>
#include <CoreGraphicsRendering/PDFDocument.hpp>
#include <CoreGraphicsRendering/SVGDocument.hpp>
#include <FramingDecisions/FDLReading.hpp>
#include <Graphics2/SketchDrawing.hpp>
#include <OverlayGenerator/DocumentCheck.hpp>
#include <Platform/FileIO.hpp>
#include <VantelPreview/PreviewProvider.hpp>
#include <VantelPreview/Thumbnail.hpp>

#include <algorithm>
#include <iostream>
#include <memory>
#include <new>

namespace vantel::cli {

namespace {

namespace fs = std::filesystem;

// The canvas to draw, or the one line saying why there is none.
struct ChosenCanvas {
    std::optional<FDLCanvas> canvas;
    std::string problem;  // "NAME: ..."
};

std::string firstError(const std::string& name, const FDLReadResult& read) {
    auto error = std::ranges::find(read.problems, FDLProblem::Severity::error, &FDLProblem::severity);
    return name + ": " + (error != read.problems.end() ? error->text() : "error: not a framing decision list");
}

// A canvas is held to the limits of an overlay canvas: one bitmap the
// drawing library can make, within 1 GiB.
std::optional<std::string> sizeProblem(CGSize size) {
    using Limits = DrawingLimits;
    if (size.width > Limits::maxCanvasSide || size.height > Limits::maxCanvasSide ||
        size.width * size.height > Limits::maxCanvasPixels) {
        return "the canvas is " + std::to_string(static_cast<long long>(size.width)) + " x " +
               std::to_string(static_cast<long long>(size.height)) + " px, larger than can be drawn";
    }
    return std::nullopt;
}

ChosenCanvas chooseCanvas(const CommandInput& input, const FrameLineChoice& choice, bool desqueeze) {
    FDLReadResult read = readFramingDecisionList(*input.framingDecisionList);
    if (read.hasErrors() || !read.document) return {std::nullopt, firstError(input.name(), read)};
    try {
        FDLCanvas canvas = chosenCanvas(*read.document, choice);
        if (auto problem = sizeProblem(chartSize(canvas, desqueeze))) {
            return {std::nullopt, input.name() + ": cannot render: " + *problem};
        }
        return {std::move(canvas), {}};
    } catch (const FrameLineChoiceError& error) {
        return {std::nullopt, input.name() + ": cannot render: " + error.what()};
    }
}

PDFPage chartPage(const FDLCanvas& canvas, CGSize size, const std::optional<Color>& background) {
    return {size, [chart = FrameLineChart(canvas, size, background)](CGContext& context) {
                drawSketch(context, chart);
            }};
}

Data encodeChart(const FDLCanvas& canvas, const OutputFormat& format, const DrawingChoices& choices) {
    const CGSize recorded = chartSize(canvas, choices.frameLines.desqueeze);
    struct Encode {
        const FDLCanvas& canvas;
        CGSize recorded;
        const DrawingChoices& choices;
        Data operator()(const BitmapOutput& bitmap) const {
            FrameLineChart chart(canvas, requestedPixelSize(recorded, choices.size), choices.background);
            return CoreGraphicsRenderer(chart).render(bitmap.type);
        }
        Data operator()(const PDFOutput&) const { return drawPDF({page()}); }
        Data operator()(const SVGOutput&) const {
            PDFPage chart = page();
            return drawSVG(chart.size, chart.draw);
        }
        PDFPage page() const { return chartPage(canvas, requestedSize(recorded, choices.size), choices.background); }
    };
    return std::visit(Encode{canvas, recorded, choices}, format.kind);
}

std::optional<Data> thumbnailOf(const FDLCanvas& canvas, int maxSide, const std::optional<Color>& background) {
    ThumbnailSize pixels = thumbnailSize(chartSize(canvas, false), maxSide);
    const CGSize size{static_cast<double>(pixels.width), static_cast<double>(pixels.height)};
    return thumbnailPNG(PreviewProvider::sketchReply(std::make_shared<FrameLineChart>(canvas, size, background)),
                        maxSide);
}

}  // namespace

void addFrameLineOptions(CLI::App& command, FrameLineOptions& options) {
    auto optional = [&command](const char* names, std::optional<std::string>& value, const char* text) {
        command.add_option_function<std::string>(names, [&value](const std::string& given) { value = given; }, text)
            ->option_text("ID")
            ->group("Framing decision lists");
    };
    optional("--canvas", options.choice.canvasID,
             "the canvas to draw (default: the first canvas of the first context)");
    optional("--decision", options.choice.decisionID,
             "the one framing decision to draw (default: every decision of the canvas)");
    command.add_flag("--desqueeze", options.desqueeze, "widen the picture by the canvas's anamorphic squeeze")
        ->group("Framing decision lists");
}

RenderOutcome renderFramingDecisionList(const CommandInput& input, const fs::path& output,
                                        const OutputFormat& format, const DrawingChoices& choices) {
    ChosenCanvas chosen = chooseCanvas(input, choices.frameLines.choice, choices.frameLines.desqueeze);
    if (!chosen.canvas) return {ExitCode::badDocument, {chosen.problem}};
    return writeEncoded(input.name(), output, [&] { return encodeChart(*chosen.canvas, format, choices); });
}

std::optional<ExitCode> thumbnailFramingDecisionList(const fs::path& file, int maxSide,
                                                     const std::optional<Color>& background, const fs::path& output) {
    if (!isFramingDecisionList({}, file.string())) return std::nullopt;
    CommandInput input = readCommandInput(file.string());
    if (input.unreadable) {
        reportProblems(input.unreadable->problems);
        return input.unreadable->failure;
    }
    ChosenCanvas chosen = chooseCanvas(input, {}, false);
    std::optional<Data> png;
    try {
        if (chosen.canvas) png = thumbnailOf(*chosen.canvas, maxSide, background);
    } catch (const std::exception& error) {
        chosen.problem = file.string() + ": cannot draw: " + error.what();
    }
    if (!png) {
        std::cerr << chosen.problem << '\n';
        return ExitCode::badDocument;
    }
    try {
        writeDataInPlaceLocked(*png, output);
    } catch (const fs::filesystem_error& error) {
        std::cerr << output.string() << ": cannot write: " << fileErrorReason(error) << '\n';
        return ExitCode::ioFailure;
    }
    return ExitCode::ok;
}

}  // namespace vantel::cli
