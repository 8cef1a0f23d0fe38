#pragma once

#include <Graphics2/CGContext.hpp>
#include <Graphics2/DrawingContext.hpp>
#include <Graphics2/Rectangle.hpp>
#include <OverlayGenerator/GridType.hpp>

#include <vector>

namespace vantel {

// One guide's rectangle with its grid lines.
struct Grid {
    Rectangle baseRect;
    GridType rowType;     // horizontal lines along the height
    GridType columnType;  // vertical lines along the width
    bool clearParent = true;  // erase the area first (raster drawing only)

    // Generic drawing: the row and column lines, then the rectangle, each
    // handed over as its own drawable. The offsets are used as absolute
    // coordinates here, unlike the raster drawing; vector outputs rely on
    // that, so the two must not be unified.
    void draw(DrawingContext& context) const;

    // Raster drawing with the context's current style: clear (if asked), the
    // rectangle, then rows and columns offset from the rectangle's corner.
    void draw(CGContext& context) const;
};

// Offsets of grid lines from the start of a side of `length`, the far edge
// excluded: pixels(100) on 250 gives 100, 200; divisor(4) on 100 gives 25,
// 50, 75. A divisor whose step comes out exactly 0 (a side of length 0) is a
// programming error and stops the process.
std::vector<double> gridOffsets(const GridType& type, double length);

// How many offsets gridOffsets gives, without listing them: the document
// checks count lines with it, so they count what drawing draws. Exact up to
// 2^52 lines (far beyond what can be drawn), an estimate above; infinite on
// an endless side.
double gridLineCount(const GridType& type, double length);

// Whether the grid's step comes out exactly 0 (a divisor on a side of length
// 0): gridOffsets and gridLineCount stop the process on it, so a document
// check asks first.
bool gridStepIsZero(const GridType& type, double length);

}  // namespace vantel
