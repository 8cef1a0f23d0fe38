#pragma once

#include <Graphics2/CGContext.hpp>
#include <Platform/Data.hpp>

#include <functional>
#include <vector>

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

// One page of a document of several: its size in points and its drawing.
struct PDFPage {
    CGSize size;
    std::function<void(CGContext&)> draw;
};

// The pages in order, each of its own size, with the rules of drawPDF.
// The file is the same bytes for the same drawing on every run: its creation
// date is SOURCE_DATE_EPOCH when that is set (seconds since 1970, as
// reproducible builds use it), and absent otherwise.
Data drawPDF(const std::vector<PDFPage>& pages);

}  // namespace vantel
