#pragma once

#include <OverlayGenerator/OverlayGen.hpp>
#include <VantelPreview/QLFilePreviewRequest.hpp>
#include <VantelPreview/QLPreviewReply.hpp>

#include <exception>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace vantel {

// Answers preview requests for overlay documents: the reply's context is the
// whole canvas (margin included, unscaled, in the document's units as
// points), a vector context, and its drawing draws the document's sketch into
// whatever context the host supplies.
//
// Each request runs on a thread of its own. The provider waits for the
// requests it started before it goes away, so it must outlive nothing the
// completion handlers use.
class PreviewProvider {
public:
    using CompletionHandler = std::function<void(std::optional<QLPreviewReply>, std::exception_ptr)>;

    PreviewProvider() = default;
    PreviewProvider(const PreviewProvider&) = delete;
    PreviewProvider& operator=(const PreviewProvider&) = delete;
    ~PreviewProvider();

    // The reply, or the error of loadDocument (read, decoding, size limit or
    // a document that cannot be drawn, or one whose drawing at the canvas's
    // size passes checkDrawingCost) through the future.
    std::future<QLPreviewReply> providePreview(const QLFilePreviewRequest& request) const;

    // Starts the work and returns at once. The handler is called exactly once,
    // on the request's thread: with the reply and no error, or with no reply
    // and the error. A handler that throws is a programming error and stops
    // the process.
    void providePreviewForFileRequest(const QLFilePreviewRequest& request,
                                      CompletionHandler completionHandler) const;

    // The reply for a document already read and decoded, as a request for its
    // file would be answered. A host that checks a document before drawing it
    // asks with the document it checked, so that a file changed in between
    // cannot bring it an unchecked one.
    static QLPreviewReply previewReply(std::shared_ptr<const OverlayGen> document);

    // The same for any other sketch a host has made ready to draw (the chart
    // of a framing decision list): a vector context of the sketch's size.
    static QLPreviewReply sketchReply(std::shared_ptr<const Sketch> sketch);

private:
    // The work of one request: loads and checks the document at
    // request.fileURL and builds the reply. Read and decoding errors
    // (std::filesystem::filesystem_error, DecodingError) are thrown
    // unchanged; a file over the size limit is a filesystem_error
    // (file_too_large) and a document that would stop drawing an
    // UndrawableDocumentError, so no request can end the host.
    static QLPreviewReply reply(const QLFilePreviewRequest& request);
    void sweepFinishedTasks() const;

    // Requests in flight (and finished ones not yet swept).
    mutable std::mutex mutex_;
    mutable std::vector<std::future<void>> tasks_;
};

}  // namespace vantel
