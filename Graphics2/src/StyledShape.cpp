#include <Graphics2/StyledShape.hpp>

namespace vantel {

void StyledShape::draw(CGContext& context) const {
    context.saveGState();
    if (strokeColor) context.setStrokeColor(strokeColor->red, strokeColor->green, strokeColor->blue, strokeColor->alpha);
    if (strokeWidth) context.setLineWidth(*strokeWidth);
    if (fillColor) context.setFillColor(fillColor->red, fillColor->green, fillColor->blue, fillColor->alpha);
    shape.draw(context);
    context.restoreGState();
}

}  // namespace vantel
