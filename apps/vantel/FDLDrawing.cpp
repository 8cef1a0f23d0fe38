#include "FDLDrawing.hpp"

#include <CoreGraphicsRendering/CairoContext.hpp>
#include <CoreGraphicsRendering/CoreGraphicsRenderer.hpp>
#include <CoreGraphicsRendering/ImageEncoding.hpp>
#include <CoreGraphicsRendering/PDFDocument.hpp>
#include <CoreGraphicsRendering/SVGDocument.hpp>
#include <FramingDecisions/FDLReading.hpp>
#include <Graphics2/SketchDrawing.hpp>
#include <Platform/Fatal.hpp>

#include <algorithm>
#include <memory>

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

ChosenCanvas chooseCanvas(const CommandInput& input, const FrameLineChoice& choice) {
    FDLReadResult read = readFramingDecisionList(*input.framingDecisionList);
    if (read.hasErrors() || !read.document) return {std::nullopt, firstError(input.name(), read)};
    try {
        return {chosenCanvas(*read.document, choice), {}};
    } catch (const FrameLineChoiceError& error) {
        return {std::nullopt, input.name() + ": cannot render: " + error.what()};
    }
}

PDFPage chartPage(const FDLCanvas& canvas, CGSize size, const std::optional<Color>& background) {
    return {size, [chart = FrameLineChart(canvas, size, background)](CGContext& context) {
                drawSketch(context, chart);
            }};
}

// Flattened as overlay bitmaps are: the picture laid onto an opaque colour.
Data encodeChartBitmap(const FrameLineChart& chart, NSBitmapImageFileType type, const std::optional<Color>& flatten) {
    CoreGraphicsRenderer renderer(chart);
    if (flatten) {
        dynamic_cast<CairoContext&>(renderer.context()).paintBehind(flatten->red, flatten->green, flatten->blue);
    }
    return renderer.render(type);
}

Data encodeChart(const FDLCanvas& canvas, const OutputFormat& format, CGSize size, const DrawingChoices& choices) {
    struct Encode {
        const FDLCanvas& canvas;
        CGSize size;
        const DrawingChoices& choices;
        Data operator()(const BitmapOutput& bitmap) const {
            return encodeChartBitmap(FrameLineChart(canvas, size, choices.background), bitmap.type, choices.flatten);
        }
        Data operator()(const PDFOutput&) const { return drawPDF({chartPage(canvas, size, choices.background)}); }
        Data operator()(const SVGOutput&) const {
            PDFPage page = chartPage(canvas, size, choices.background);
            return drawSVG(page.size, page.draw);
        }
        Data operator()(const FDLOutput&) const {
            fatalError("a framing decision list is drawn as a picture, not written as a list");
        }
    };
    return std::visit(Encode{canvas, size, choices}, format.kind);
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
    if (std::holds_alternative<FDLOutput>(format.kind)) {
        return {ExitCode::badUsage, {input.name() + ": is a framing decision list already; render it to a picture "
                                                    "format, such as png, svg or pdf"}};
    }
    ChosenCanvas chosen = chooseCanvas(input, choices.frameLines.choice);
    if (!chosen.canvas) return {ExitCode::badDocument, {chosen.problem}};
    const CGSize size = outputSize(chartSize(*chosen.canvas, choices.frameLines.desqueeze), choices.size);
    if (auto refused = refusedOutputSize(format, size)) return {ExitCode::badUsage, {input.name() + ": " + *refused}};
    MemoryBudget::Reservation held;
    if (choices.memory) held = choices.memory->reserve(outputMemory(format, size));
    return writeEncoded(input.name(), output, [&] { return encodeChart(*chosen.canvas, format, size, choices); });
}

RenderOutcome addFramingDecisionListPage(const CommandInput& input, const DrawingChoices& choices,
                                         std::vector<PDFPage>& pages) {
    ChosenCanvas chosen = chooseCanvas(input, choices.frameLines.choice);
    if (!chosen.canvas) return {ExitCode::badDocument, {chosen.problem}};
    const CGSize size = outputSize(chartSize(*chosen.canvas, choices.frameLines.desqueeze), choices.size);
    if (auto refused = refusedOutputSize(*OutputFormat::named("pdf"), size)) {
        return {ExitCode::badUsage, {input.name() + ": " + *refused}};
    }
    pages.push_back(chartPage(*chosen.canvas, size, choices.background));
    return {};
}

}  // namespace vantel::cli
