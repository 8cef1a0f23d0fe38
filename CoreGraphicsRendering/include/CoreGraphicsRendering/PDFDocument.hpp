#pragma once

#include <Graphics2/CGContext.hpp>
#include <Platform/Data.hpp>

#include <functional>

namespace vantel {

// A one-page PDF of `pageSize` points whose page is drawn by `draw`, as
// vector paths (no embedded bitmap). The context's user space is the page:
// origin at the top left, y downward, one unit per point.
//
// A PDF page has no transparency to clear to, so clearRect paints the paper
// (opaque white): the page looks like the same drawing made in a bitmap and
// shown over white, and it stays vector.
//
// A side below or at zero throws RenderError::dimensionIsZero; a side that is
// not finite stops the process. Exceptions from `draw` pass through; a cairo
// failure throws CairoError.
Data drawPDF(CGSize pageSize, const std::function<void(CGContext&)>& draw);

}  // namespace vantel
