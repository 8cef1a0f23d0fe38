#pragma once

#include <Graphics2/CGContext.hpp>
#include <Platform/Data.hpp>

#include <functional>

namespace vantel {

// An SVG document of `size` pixels (width, height and a viewBox of the same
// numbers) drawn by `draw` through the same CGContext operations that draw
// bitmaps and PDF pages, so the file shows the picture those show: true
// fill and stroke colours with their alpha, stroke weights and the current
// transformation, as vector paths only.
//
// Clearing is expressed in SVG itself: what was drawn before a clearRect is
// masked by the canvas minus the cleared rectangle, so what lies under the
// hole becomes transparent, as in a bitmap. The masks are not nested: each
// run of shapes between two clears carries one mask holding every later
// hole, so the file stays a few levels deep however many clears it has.
//
// A shape whose numbers are not finite is left out rather than written as
// text no reader can parse. A side below or at zero throws
// RenderError::dimensionIsZero; a side that is not finite stops the process,
// as for PDF pages. Exceptions from `draw` pass through.
Data drawSVG(CGSize size, const std::function<void(CGContext&)>& draw);

}  // namespace vantel
