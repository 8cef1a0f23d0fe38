#pragma once

// What the hosts check before they draw a document that someone else wrote.
// The libraries stop the process on values that can only come from a
// programming error in code (a zero grid step, a non-finite canvas); a
// document read from a file can hold any of them, so a host runs
// checkDocument first and reports each problem instead of drawing.

#include <OverlayGenerator/OverlayGen.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace vantel {

// The largest documents that can be drawn. A canvas side is limited by the
// image surface (32767 px); the area keeps one RGBA bitmap within 1 GiB.
struct DrawingLimits {
    static constexpr double maxCanvasSide = 32767;
    static constexpr double maxCanvasPixels = 268435456;  // 16384 x 16384
    static constexpr int maxGuideDepth = 64;               // guide levels, top level is 1
    static constexpr double maxGridLines = 100000;         // per side of one guide
    // All grid lines of all guides together. Binary property lists can share
    // one guide among many parents, so a file of a few hundred bytes can hold
    // thousands of guides; their lines, not the file, set the drawing time.
    static constexpr double maxDocumentGridLines = 1000000;
    static constexpr double maxRatioSide = 1e15;           // ratio width or height
};

// One reason a document cannot be drawn: where (a coding path such as
// "ratios[1].children[0].columnType", empty for the whole document) and what.
struct DocumentProblem {
    std::string path;
    std::string message;

    // "path: message", or the message alone when there is no path.
    std::string text() const;
    friend bool operator==(const DocumentProblem&, const DocumentProblem&) = default;
};

// Every value of the document that would stop drawing or make no sense to
// draw, in document order. Empty when the document can be drawn.
std::vector<DocumentProblem> checkDocument(const OverlayGen& document);

}  // namespace vantel
