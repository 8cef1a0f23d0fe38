#include "RenderOutput.hpp"

#include "DocumentEncoding.hpp"
#include "DocumentLoading.hpp"
#include "FDLDrawing.hpp"
#include "OverlayAsFDL.hpp"

#include <CoreGraphicsRendering/PDFDocument.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>
#include <Platform/FileIO.hpp>

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
        pages.push_back(documentPage(std::move(loaded.document), choices.size));
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
    return encodeAndWrite(source.name(), output, [&] { return encodeDocument(loaded.document, format, choices.size, choices.flatten); });
}

RenderOutcome writeEncoded(const std::string& name, const std::filesystem::path& output,
                           const std::function<Data()>& encode) {
    return encodeAndWrite(name, output, encode);
}

}  // namespace vantel::cli
