#include <VantelPreview/PreviewProvider.hpp>

#include <Graphics2/SketchDrawing.hpp>
#include <OverlayGenerator/DocumentLoading.hpp>
#include <Platform/Fatal.hpp>

#include <chrono>
#include <memory>
#include <string>

namespace vantel {

PreviewProvider::~PreviewProvider() {
    std::vector<std::future<void>> running;
    {
        std::lock_guard lock(mutex_);
        running.swap(tasks_);
    }
    for (auto& task : running) task.wait();
}

QLPreviewReply PreviewProvider::reply(const QLFilePreviewRequest& request) {
    LoadedDocument loaded = loadDocument(DocumentSource::url(request.fileURL));
    if (!loaded.ok()) std::rethrow_exception(loaded.error);
    // The reply's context is the whole canvas, so that is what drawing it costs.
    std::vector<DocumentProblem> costs = checkDrawingCost(*loaded.document, loaded.document->size().cg());
    if (!costs.empty()) throw UndrawableDocumentError(std::move(costs));
    return previewReply(std::move(loaded.document));
}

QLPreviewReply PreviewProvider::previewReply(std::shared_ptr<const OverlayGen> document) {
    // The drawing block outlives this call and may be copied: it shares the
    // document, which is not copyable.
    return QLPreviewReply(document->size().cg(), false,
                          [document](CGContext& context, const QLPreviewReply&) { drawSketch(context, *document); });
}

QLPreviewReply PreviewProvider::sketchReply(std::shared_ptr<const Sketch> sketch) {
    return QLPreviewReply(sketch->size().cg(), false,
                          [sketch](CGContext& context, const QLPreviewReply&) { drawSketch(context, *sketch); });
}

std::future<QLPreviewReply> PreviewProvider::providePreview(const QLFilePreviewRequest& request) const {
    return std::async(std::launch::async, [request] { return reply(request); });
}

void PreviewProvider::providePreviewForFileRequest(const QLFilePreviewRequest& request,
                                                   CompletionHandler completionHandler) const {
    auto task = [request, handler = std::move(completionHandler)] {
        std::optional<QLPreviewReply> answer;
        std::exception_ptr error;
        try {
            answer.emplace(reply(request));
        } catch (...) {
            error = std::current_exception();
        }
        try {
            handler(std::move(answer), error);
        } catch (const std::exception& thrown) {
            fatalError(std::string("PreviewProvider: the completion handler threw: ") + thrown.what());
        } catch (...) {
            fatalError("PreviewProvider: the completion handler threw");
        }
    };
    std::lock_guard lock(mutex_);
    sweepFinishedTasks();
    tasks_.push_back(std::async(std::launch::async, std::move(task)));
}

void PreviewProvider::sweepFinishedTasks() const {
    std::erase_if(tasks_, [](const std::future<void>& task) {
        return task.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    });
}

}  // namespace vantel
