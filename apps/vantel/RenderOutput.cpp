#include "RenderOutput.hpp"

#include "DocumentLoading.hpp"
#include "FDLDrawing.hpp"
#include "OverlayAsFDL.hpp"

#include <CoreGraphicsRendering/CairoContext.hpp>
#include <CoreGraphicsRendering/CoreGraphicsRenderer.hpp>
#include <CoreGraphicsRendering/PDFDocument.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>
#include <CoreGraphicsRendering/SVGDocument.hpp>
#include <Platform/FileIO.hpp>
#include <VantelPreview/PreviewProvider.hpp>

#include <Graphics2/Size.hpp>
#include <VantelPreview/QLPreviewReply.hpp>

#include <memory>
#include <new>

namespace vantel::cli {

namespace {

std::string renderErrorText(const RenderError& error) {
    switch (error.kind) {
        case RenderError::Case::dimensionIsZero:
            return "the canvas is " + std::to_string(error.width) + " x " + std::to_string(error.height) +
                   " px, too small to draw";
        case RenderError::Case::failedToMakeImage: return error.what();
        case RenderError::Case::failedToRenderPNGRepresentation: return "encoding the image failed";
    }
    return error.what();
}

RenderOutcome failure(ExitCode code, std::string line) { return {code, {std::move(line)}}; }



}  // namespace

namespace {

// The preview's vector reply for the document, drawn on a page of the size
// asked for (a PDF page, or the SVG picture).
PDFPage pageOf(const std::shared_ptr<const OverlayGen>& document, const SizeRequest& size) {
    auto reply = std::make_shared<QLPreviewReply>(PreviewProvider::previewReply(document));
    CGSize canvas = reply->contextSize;
    CGSize page = outputSize(canvas, size);
    return {page, [reply, canvas, page](CGContext& context) {
                context.scaleCTM(page.width / canvas.width, page.height / canvas.height);
                reply->draw(context);
            }};
}

// The document's drawing scaled as a whole to another size: a sketch of its
// own, so that the renderer draws it as any sketch (on every core when large).
class ScaledDocument final : public Sketch {
public:
    ScaledDocument(const OverlayGen& document, CGSize pixels) : document_(document), pixels_(pixels) {}

    Size size() const override { return Size(pixels_.width, pixels_.height, 0); }
    Drawable body() const override {
        CGSize canvas = document_.size().cg();
        return Drawable(Scaled{document_.body(), pixels_.width / canvas.width, pixels_.height / canvas.height});
    }

private:
    struct Scaled {
        Drawable body;
        double sx, sy;
        void draw(CGContext& context) const {
            context.scaleCTM(sx, sy);
            body.draw(context);
        }
    };

    const OverlayGen& document_;
    CGSize pixels_;
};

Data encodeSketch(const Sketch& sketch, NSBitmapImageFileType type, const std::optional<Color>& flatten) {
    CoreGraphicsRenderer renderer(sketch);
    if (flatten) {
        // A renderer made from a sketch draws into a cairo bitmap of its own.
        dynamic_cast<CairoContext&>(renderer.context()).paintBehind(flatten->red, flatten->green, flatten->blue);
    }
    return renderer.render(type);
}

Data encodeBitmap(const OverlayGen& document, NSBitmapImageFileType type, const DrawingChoices& choices) {
    CGSize pixels = outputSize(document.size().cg(), choices.size);
    if (pixels == document.size().cg()) return encodeSketch(document, type, choices.flatten);
    ScaledDocument scaled(document, pixels);
    return encodeSketch(scaled, type, choices.flatten);
}

// Encodes with `encode`, turning what it throws into the file's lines.
template <typename Encode>
RenderOutcome encodeAndWrite(const std::string& name, const std::filesystem::path& output, Encode encode) {
    Data bytes;
    try {
        bytes = encode();
    } catch (const RenderError& error) {
        return failure(ExitCode::badDocument, name + ": cannot render: " + renderErrorText(error));
    } catch (const std::bad_alloc&) {
        return failure(ExitCode::badDocument, name + ": cannot render: not enough memory");
    } catch (const std::exception& error) {
        return failure(ExitCode::badDocument, name + ": cannot render: " + error.what());
    }
    try {
        if (output != standardStream) {
            writeDataAtomically(bytes, output);
        } else if (!writeToStandardOutput(bytes)) {
            return {ExitCode::ioFailure, {}};  // the reader stopped reading: nothing to say
        }
    } catch (const std::filesystem::filesystem_error& error) {
        return failure(ExitCode::ioFailure, output.string() + ": cannot write: " + fileErrorReason(error));
    }
    return {};
}

}  // namespace

Data encodeDocument(const std::shared_ptr<const OverlayGen>& document, const OutputFormat& format,
                    const DrawingChoices& choices) {
    struct Encode {
        const std::shared_ptr<const OverlayGen>& document;
        const DrawingChoices& choices;
        Data operator()(const BitmapOutput& bitmap) const { return encodeBitmap(*document, bitmap.type, choices); }
        Data operator()(const PDFOutput&) const { return drawPDF({pageOf(document, choices.size)}); }
        Data operator()(const SVGOutput&) const {
            PDFPage page = pageOf(document, choices.size);
            return drawSVG(page.size, page.draw);
        }
        Data operator()(const FDLOutput&) const {
            return encodeOverlayDecisionList(*document, outputSize(document->size().cg(), choices.size));
        }
    };
    return std::visit(Encode{document, choices}, format.kind);
}

RenderOutcome renderPDFPages(const std::vector<std::filesystem::path>& inputs, const std::filesystem::path& output,
                             const DrawingChoices& choices) {
    std::vector<PDFPage> pages;
    RenderOutcome outcome;
    for (const std::filesystem::path& input : inputs) {
        CommandInput read = readCommandInput(input.string());
        RenderOutcome added = read.unreadable ? RenderOutcome{read.unreadable->failure, read.unreadable->problems}
                              : read.framingDecisionList ? addFramingDecisionListPage(read, choices, pages)
                                                         : RenderOutcome{};
        if (!added.ok() || read.framingDecisionList) {
            outcome.code = worse(outcome.code, added.code);
            outcome.problems.insert(outcome.problems.end(), added.problems.begin(), added.problems.end());
            continue;
        }
        CommandDocument loaded = readDocument(read.source, true, choices.background);
        if (!loaded.ok()) {
            outcome.code = worse(outcome.code, loaded.failure);
            outcome.problems.insert(outcome.problems.end(), loaded.problems.begin(), loaded.problems.end());
            continue;
        }
        pages.push_back(pageOf(std::move(loaded.document), choices.size));
    }
    if (!outcome.ok()) return outcome;
    return encodeAndWrite(output.string(), output, [&] { return drawPDF(pages); });
}

RenderOutcome renderFile(const std::filesystem::path& input, const std::filesystem::path& output,
                         const OutputFormat& format, const DrawingChoices& choices) {
    CommandInput read = readCommandInput(input.string());
    if (read.unreadable) return {read.unreadable->failure, std::move(read.unreadable->problems)};
    if (read.framingDecisionList) return renderFramingDecisionList(read, output, format, choices);
    const DocumentSource& source = read.source;
    CommandDocument loaded = readDocument(source, true, choices.background);
    if (!loaded.ok()) return {loaded.failure, std::move(loaded.problems)};
    const CGSize size = outputSize(loaded.document->size().cg(), choices.size);
    if (auto refused = refusedOutput(*loaded.document, format, size)) {
        return failure(ExitCode::badUsage, source.name() + ": " + *refused);
    }
    MemoryBudget::Reservation held;
    if (choices.memory) held = choices.memory->reserve(outputMemory(format, size));
    return encodeAndWrite(source.name(), output, [&] { return encodeDocument(loaded.document, format, choices); });
}

RenderOutcome writeEncoded(const std::string& name, const std::filesystem::path& output,
                           const std::function<Data()>& encode) {
    return encodeAndWrite(name, output, encode);
}

}  // namespace vantel::cli
