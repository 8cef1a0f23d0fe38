// Feeds arbitrary bytes through what the hosts do with a document: decode the
// property list, check it, and only when the check passes describe it (as
// `vantel info` does) and draw it (as `vantel thumbnail` and `vantel render`
// do). Recoverable decoding errors are the expected answer to bad bytes; any
// abort, crash, sanitizer report or uncaught exception after that is a bug,
// and so is an exception out of drawing a document the check let through.
//
// Bytes that are a framing decision list (a JSON object with "uuid" and
// "version") go where the command sends them instead: read and checked, and
// only when the check passes every canvas drawn as a frame-line chart, and
// the list written back, which must read back without an error.
//
// Drawing is kept small so that a canvas at the size limit does not make the
// fuzzer allocate a gigabyte: the thumbnail, the SVG picture and the PDF page
// are scaled into a few pixels, the full-size bitmap render runs only on
// small canvases and the vector files only for drawings of few shapes.

#include <CoreGraphicsRendering/CoreGraphicsRenderer.hpp>
#include <CoreGraphicsRendering/PDFDocument.hpp>
#include <CoreGraphicsRendering/SVGDocument.hpp>
#include <FramingDecisions/FDLReading.hpp>
#include <FramingDecisions/FDLWriting.hpp>
#include <FramingDecisions/FrameLineChart.hpp>
#include <Graphics2/SketchDrawing.hpp>
#include <OverlayGenerator/DocumentLoading.hpp>
#include <VantelPreview/PreviewProvider.hpp>
#include <VantelPreview/Thumbnail.hpp>

#include <cmath>
#include <cstdlib>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace {

using namespace vantel;

constexpr int thumbnailSide = 48;
constexpr double largestFullRender = 128 * 128;  // pixels

// What `vantel info` reads of each guide.
void describeGuides(const std::vector<AspectRatio>& guides, const Size& box) {
    for (const AspectRatio& guide : guides) {
        Size fitted = guide.fitting(box);
        (void)guide.formatted();
        if (guide.children) describeGuides(*guide.children, fitted);
    }
}

// Counts what a drawing paints. The vector files grow with every line (a
// document at the grid line limit makes an SVG of about 100 MB), so they are
// drawn only for drawings of a few thousand shapes, as the full-size bitmap
// is only for small canvases.
class PaintCounter final : public CGContext {
public:
    std::size_t painted = 0;
    void saveGState() override {}
    void restoreGState() override {}
    void setStrokeColor(double, double, double, double) override {}
    void setFillColor(double, double, double, double) override {}
    void setLineWidth(double) override {}
    void setLineDash(std::span<const double>) override {}
    void rotateCTM(double) override {}
    void translateCTM(double, double) override {}
    void scaleCTM(double, double) override {}
    void concatCTM(const CGAffineTransform&) override {}
    void moveTo(double, double) override {}
    void addLineTo(double, double) override {}
    void strokePath() override { ++painted; }
    void fillRect(const CGRect&) override { ++painted; }
    void strokeRect(const CGRect&) override { ++painted; }
    void clearRect(const CGRect&) override { ++painted; }
};

constexpr std::size_t largestVectorDrawing = 20000;  // painting operations

// The reply drawn as `vantel render` draws it, as a bitmap thumbnail and on
// the two vector back ends, scaled to the thumbnail's size.
void drawReplyOf(std::shared_ptr<const OverlayGen> document) {
    const QLPreviewReply reply = PreviewProvider::previewReply(std::move(document));
    (void)thumbnailPNG(reply, thumbnailSide);
    const ThumbnailSize small = thumbnailSize(reply.contextSize, thumbnailSide);
    const CGSize page{static_cast<double>(small.width), static_cast<double>(small.height)};
    auto draw = [&](CGContext& context) {
        context.scaleCTM(page.width / reply.contextSize.width, page.height / reply.contextSize.height);
        reply.draw(context);
    };
    PaintCounter counter;
    reply.draw(counter);
    if (counter.painted > largestVectorDrawing) return;
    (void)drawSVG(page, draw);
    (void)drawPDF(page, draw);
}

void renderFullSize(const OverlayGen& document) {
    Size size = document.size();
    if (std::trunc(size.width) * std::trunc(size.height) > largestFullRender) return;
    CoreGraphicsRenderer renderer(document);
    (void)renderer.render(NSBitmapImageFileType::png);
}

// Each canvas as `vantel thumbnail` draws it, and at the same small size on
// the two vector back ends, squeezed and desqueezed.
void drawCharts(const FramingDecisionList& list) {
    for (const FDLContext& context : list.contexts) {
        for (const FDLCanvas& listed : context.canvases) {
            const FDLCanvas canvas = chosenCanvas(list, {listed.id, std::nullopt});
            for (bool desqueeze : {false, true}) {
                const ThumbnailSize small = thumbnailSize(chartSize(canvas, desqueeze), thumbnailSide);
                const CGSize page{static_cast<double>(small.width), static_cast<double>(small.height)};
                auto chart = std::make_shared<FrameLineChart>(canvas, page);
                (void)thumbnailPNG(PreviewProvider::sketchReply(chart), thumbnailSide);
                auto draw = [&](CGContext& target) { drawSketch(target, *chart); };
                (void)drawSVG(page, draw);
                (void)drawPDF(page, draw);
            }
        }
    }
}

// A list that passed its check and is written back must pass it again.
void writeBack(const FDLReadResult& read) {
    Data written;
    try {
        written = encodeFramingDecisionList(*read.document, &read.json);
    } catch (const EncodingError&) {
        return;  // a number JSON cannot hold, refused as documented
    }
    if (readFramingDecisionList(written).hasErrors()) std::abort();
}

bool takenAsFramingDecisionList(const Data& bytes) {
    if (!isFramingDecisionList(bytes, "input")) return false;
    FDLReadResult read = readFramingDecisionList(bytes);
    if (read.hasErrors()) return true;
    drawCharts(*read.document);
    writeBack(read);
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (takenAsFramingDecisionList(Data(data, data + size))) return 0;
    LoadedDocument loaded = loadDocument(DocumentSource::bytes(Data(data, data + size), "input"));
    if (!loaded.ok()) return 0;
    const OverlayGen& document = *loaded.document;
    (void)document.description();
    describeGuides(document.ratios(), document.size());
    renderFullSize(document);
    drawReplyOf(loaded.document);
    return 0;
}
