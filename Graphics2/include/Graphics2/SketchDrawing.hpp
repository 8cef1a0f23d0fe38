#pragma once

#include <Graphics2/CGContext.hpp>
#include <Graphics2/Sketch.hpp>

namespace vantel {

// Draws the sketch's body if it is a raster drawable, and nothing else: no
// background, no transform, the size not consulted. The caller prepares the
// context.
void drawSketch(CGContext& context, const Sketch& sketch);

// Changes the transform so that the sketch's page (width x height, margin
// not used) fits the target, aspect kept and centred: translate, then scale
// by the smaller of the two ratios. Draws nothing. A zero page side gives an
// infinite or NaN scale; that is left to floating point on purpose.
void fitSketch(CGContext& context, const Sketch& sketch, double targetWidth, double targetHeight);
// The same for a page known only by its size (a preview reply's context).
void fitPage(CGContext& context, CGSize page, CGSize target);

}  // namespace vantel
