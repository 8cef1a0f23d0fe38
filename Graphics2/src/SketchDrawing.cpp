#include <Graphics2/Size.hpp>
#include <Graphics2/SketchDrawing.hpp>

namespace vantel {

void drawSketch(CGContext& context, const Sketch& sketch) {
    sketch.body().draw(context);
}

void fitSketch(CGContext& context, const Sketch& sketch, double targetWidth, double targetHeight) {
    fitPage(context, sketch.size().cg(), CGSize{targetWidth, targetHeight});
}

void fitPage(CGContext& context, CGSize page, CGSize target) {
    double scaleX = target.width / page.width;
    double scaleY = target.height / page.height;
    double scale = scaleY < scaleX ? scaleY : scaleX;
    context.translateCTM((target.width - page.width * scale) * 0.5, (target.height - page.height * scale) * 0.5);
    context.scaleCTM(scale, scale);
}

}  // namespace vantel
