#include <VantelPreview/FileThumbnail.hpp>

#include <FramingDecisions/FDLReading.hpp>
#include <FramingDecisions/FrameLineChart.hpp>
#include <VantelPreview/PreviewProvider.hpp>
#include <VantelPreview/Thumbnail.hpp>

#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <utility>

namespace vantel {

namespace {

FileThumbnail failed(ThumbnailFailure failure, std::string problem) {
    FileThumbnail result;
    result.failure = failure;
    result.problems.push_back(std::move(problem));
    return result;
}

// Only a file that could not be read at all is unreadable; one past the size
// bound is refused as a bad document, as the commands refuse it.
FileThumbnail failedLoad(DocumentFailure failure, const std::vector<DocumentProblem>& problems) {
    FileThumbnail result;
    result.failure = failure == DocumentFailure::unreadable ? ThumbnailFailure::unreadable : ThumbnailFailure::bad;
    for (const DocumentProblem& problem : problems) result.problems.push_back(problem.text());
    return result;
}

FileThumbnail drawn(const QLPreviewReply& reply, int maxSide) {
    try {
        return {drawThumbnail(reply, maxSide), ThumbnailFailure::none, {}};
    } catch (const std::exception& error) {
        return failed(ThumbnailFailure::bad, std::string("cannot draw: ") + error.what());
    }
}

std::string firstError(const FDLReadResult& read) {
    auto error = std::ranges::find(read.problems, FDLProblem::Severity::error, &FDLProblem::severity);
    return error != read.problems.end() ? error->text() : "error: not a framing decision list";
}

// The chart is made at the thumbnail's own size, so its lines keep the width
// they have in a small picture instead of being scaled down to nothing.
FileThumbnail chartThumbnail(const DocumentSource& source, int maxSide, const std::optional<Color>& background) {
    LoadedBytes read = loadDocumentBytes(source);
    if (!read.ok()) return failedLoad(read.failure, read.problems);
    FDLReadResult list = readFramingDecisionList(read.bytes);
    if (list.hasErrors() || !list.document) return failed(ThumbnailFailure::bad, firstError(list));
    try {
        FDLCanvas canvas = chosenCanvas(*list.document, {});
        ThumbnailSize pixels = thumbnailSize(chartSize(canvas, false), maxSide);
        const CGSize size{static_cast<double>(pixels.width), static_cast<double>(pixels.height)};
        return drawn(PreviewProvider::sketchReply(std::make_shared<FrameLineChart>(canvas, size, background)), maxSide);
    } catch (const FrameLineChoiceError& error) {
        return failed(ThumbnailFailure::bad, std::string("cannot render: ") + error.what());
    } catch (const std::exception& error) {
        return failed(ThumbnailFailure::bad, std::string("cannot draw: ") + error.what());
    }
}

// Checked first, so that a document the libraries would refuse to draw never
// reaches them; what drawing costs is counted at the thumbnail's size, so a
// canvas far too large to render whole still gets one.
FileThumbnail documentThumbnail(const DocumentSource& source, int maxSide, const std::optional<Color>& background) {
    LoadedDocument loaded = loadDocument(source, true);
    if (!loaded.ok()) return failedLoad(loaded.failure, loaded.problems);
    if (background) loaded.document->setBackgroundColor(*background);
    ThumbnailSize pixels = thumbnailSize(loaded.document->size().cg(), maxSide);
    std::vector<DocumentProblem> costs =
        checkDrawingCost(*loaded.document, CGSize{double(pixels.width), double(pixels.height)});
    if (!costs.empty()) return failed(ThumbnailFailure::tooCostly, costs.front().text());
    return drawn(PreviewProvider::previewReply(std::move(loaded.document)), maxSide);
}

}  // namespace

FileThumbnail drawFileThumbnail(const DocumentSource& source, int maxSide, const std::optional<Color>& background) {
    try {
        if (isFramingDecisionList({}, source.name())) return chartThumbnail(source, maxSide, background);
        return documentThumbnail(source, maxSide, background);
    } catch (const std::bad_alloc&) {  // a document too big to decode in this memory
        return failed(ThumbnailFailure::bad, "cannot read: not enough memory");
    }
}

}  // namespace vantel
