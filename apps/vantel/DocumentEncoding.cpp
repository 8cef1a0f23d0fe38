#include "DocumentEncoding.hpp"

#include "OverlayAsFDL.hpp"

#include <CoreGraphicsRendering/CairoContext.hpp>
#include <CoreGraphicsRendering/CoreGraphicsRenderer.hpp>
#include <CoreGraphicsRendering/SVGDocument.hpp>
#include <Graphics2/Size.hpp>
#include <VantelPreview/PreviewProvider.hpp>
#include <VantelPreview/QLPreviewReply.hpp>

#include <variant>

namespace vantel::cli {

namespace {

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

Data encodeBitmap(const OverlayGen& document, NSBitmapImageFileType type, const SizeRequest& size,
                  const std::optional<Color>& flatten) {
    CGSize pixels = outputSize(document.size().cg(), size);
    if (pixels == document.size().cg()) return encodeSketch(document, type, flatten);
    ScaledDocument scaled(document, pixels);
    return encodeSketch(scaled, type, flatten);
}

}  // namespace

PDFPage documentPage(const std::shared_ptr<const OverlayGen>& document, const SizeRequest& size) {
    auto reply = std::make_shared<QLPreviewReply>(PreviewProvider::previewReply(document));
    CGSize canvas = reply->contextSize;
    CGSize page = outputSize(canvas, size);
    return {page, [reply, canvas, page](CGContext& context) {
                context.scaleCTM(page.width / canvas.width, page.height / canvas.height);
                reply->draw(context);
            }};
}

Data encodeDocument(const std::shared_ptr<const OverlayGen>& document, const OutputFormat& format,
                    const SizeRequest& size, const std::optional<Color>& flatten) {
    struct Encode {
        const std::shared_ptr<const OverlayGen>& document;
        const SizeRequest& size;
        const std::optional<Color>& flatten;
        Data operator()(const BitmapOutput& bitmap) const { return encodeBitmap(*document, bitmap.type, size, flatten); }
        Data operator()(const PDFOutput&) const { return drawPDF({documentPage(document, size)}); }
        Data operator()(const SVGOutput&) const {
            PDFPage page = documentPage(document, size);
            return drawSVG(page.size, page.draw);
        }
        Data operator()(const FDLOutput&) const {
            return encodeOverlayDecisionList(*document, outputSize(document->size().cg(), size));
        }
    };
    return std::visit(Encode{document, size, flatten}, format.kind);
}

}  // namespace vantel::cli
