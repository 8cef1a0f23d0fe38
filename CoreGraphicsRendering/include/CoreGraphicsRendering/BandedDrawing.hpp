#pragma once

// Drawing a large bitmap on every core: the bitmap is cut into horizontal
// bands, each band gets a context of its own over its rows of the one bitmap
// (no copy), and every band replays the whole drawing, clipped to its rows.
// The bands are shifted by whole pixels only, so cairo samples the same pixel
// grid and the pixels are exactly those one context drawing the whole bitmap
// gives. Smaller bands also keep the pixels that many overlapping fills
// composite over in cache.

#include <CoreGraphicsRendering/BitmapContext.hpp>
#include <Graphics2/CGContext.hpp>

#include <functional>

namespace vantel {

// A drawing that can be replayed: the same calls on every context it is given.
// It may run on several threads at once, each with its own context.
using Drawing = std::function<void(CGContext&)>;

// Draws `drawing` into `bitmap` in bands of `bandRows` rows (the last may be
// shorter) on up to `threads` threads. Each band's context starts as a new
// one does (no transform of its own, black, line width 1), so the bitmap's own
// context must still be in that state for the result to match drawing into
// it. When drawing fails in any band, the drawing is made once more on the
// bitmap's own context, so that its status reports the failure exactly as a
// single context would (the pixels of a failed drawing are not to be used).
void drawInBands(BitmapContext& bitmap, const Drawing& drawing, int bandRows, unsigned threads);

// drawInBands on every core for bitmaps large enough to gain from it; others
// are drawn directly into the bitmap's own context.
void drawOnAllCores(BitmapContext& bitmap, const Drawing& drawing);

}  // namespace vantel
