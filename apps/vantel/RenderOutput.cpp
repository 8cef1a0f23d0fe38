#include "RenderOutput.hpp"

#include "DocumentLoading.hpp"

#include <CoreGraphicsRendering/CoreGraphicsRenderer.hpp>
#include <CoreGraphicsRendering/PDFDocument.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>
#include <Platform/FileIO.hpp>
#include <VantelPreview/PreviewProvider.hpp>

#include <memory>
#include <new>

namespace vantel::cli {

namespace {

std::string renderErrorText(const RenderError& error) {
    switch (error.kind) {
        case RenderError::Case::dimensionIsZero:
            return "the canvas is " + std::to_string(error.width) + " x " + std::to_string(error.height) +
                   " px, too small to draw";
        case RenderError::Case::failedToMakeImage: return "drawing the image failed";
        case RenderError::Case::failedToRenderPNGRepresentation: return "encoding the image failed";
    }
    return error.what();
}

RenderOutcome failure(ExitCode code, std::string line) { return {code, {std::move(line)}}; }

std::string fileErrorText(const std::filesystem::filesystem_error& error) {
    return error.code() ? error.code().message() : error.what();
}

}  // namespace

Data encodeDocument(const std::shared_ptr<const OverlayGen>& document, const OutputFormat& format) {
    if (format.isPDF()) {
        // The preview's vector reply, drawn on a page of its context size.
        QLPreviewReply reply = PreviewProvider::previewReply(document);
        return drawPDF(reply.contextSize, [&reply](CGContext& context) { reply.draw(context); });
    }
    CoreGraphicsRenderer renderer(*document);
    return renderer.render(*format.bitmapType);
}

RenderOutcome renderFile(const std::filesystem::path& input, const std::filesystem::path& output,
                         const OutputFormat& format, const std::optional<Color>& background) {
    LoadedDocument loaded;
    try {
        loaded = loadDocument(input);
    } catch (const std::exception& error) {  // out of memory while decoding, say: this file only
        return failure(ExitCode::badDocument, input.string() + ": cannot read: " + error.what());
    }
    if (!loaded.ok()) return {loaded.failure, std::move(loaded.problems)};
    if (background) loaded.document->setBackgroundColor(*background);
    Data bytes;
    try {
        bytes = encodeDocument(std::make_shared<const OverlayGen>(std::move(*loaded.document)), format);
    } catch (const RenderError& error) {
        return failure(ExitCode::badDocument, input.string() + ": cannot render: " + renderErrorText(error));
    } catch (const std::bad_alloc&) {
        return failure(ExitCode::badDocument, input.string() + ": cannot render: not enough memory");
    } catch (const std::exception& error) {
        return failure(ExitCode::badDocument, input.string() + ": cannot render: " + error.what());
    }
    try {
        writeDataAtomically(bytes, output);
    } catch (const std::filesystem::filesystem_error& error) {
        return failure(ExitCode::ioFailure, output.string() + ": cannot write: " + fileErrorText(error));
    }
    return {};
}

}  // namespace vantel::cli
