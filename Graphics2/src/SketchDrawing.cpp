#include <Graphics2/Size.hpp>
#include <Graphics2/SketchDrawing.hpp>

namespace vantel {

void drawSketch(CGContext& context, const Sketch& sketch) {
    sketch.body().draw(context);
}

void fitSketch(CGContext& context, const Sketch& sketch, double targetWidth, double targetHeight) {
    Size page = sketch.size();
    double scaleX = targetWidth / page.width;
    double scaleY = targetHeight / page.height;
    double scale = scaleY < scaleX ? scaleY : scaleX;
    context.translateCTM((targetWidth - page.width * scale) * 0.5, (targetHeight - page.height * scale) * 0.5);
    context.scaleCTM(scale, scale);
}

}  // namespace vantel
