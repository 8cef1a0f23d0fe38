#pragma once

// What the hosts check before they draw a document that someone else wrote.
// The libraries stop the process on values that can only come from a
// programming error in code (a zero grid step, a non-finite canvas); a
// document read from a file can hold any of them, so a host runs
// checkDocument first and reports each problem instead of drawing.

#include <Graphics2/CGContext.hpp>
#include <OverlayGenerator/OverlayGen.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace vantel {

// The largest documents that can be drawn. A canvas side is limited as an
// image surface's (32767 px) so that its layout stays in the range drawing
// libraries handle; how many pixels are drawn is the output's affair, since
// a large canvas may be drawn small.
struct DrawingLimits {
    static constexpr double maxCanvasSide = 32767;
    static constexpr int maxGuideDepth = 64;               // guide levels, top level is 1
    static constexpr double maxGridLines = 100000;         // per side of one guide
    // All grid lines of all guides together. Binary property lists can share
    // one guide among many parents, so a file of a few hundred bytes can hold
    // thousands of guides; their lines, not the file, set the drawing time.
    static constexpr double maxDocumentGridLines = 1000000;
    static constexpr double maxRatioSide = 1e15;           // ratio width or height

    // What one drawing may cost, counted in pixels of the size it is drawn
    // at. Large pictures are drawn in bands that each replay every guide, so
    // a guide costs about the whole picture's area wherever it lies; a grid
    // line costs its length. Chosen by measurement (see ARCHITECTURE.md):
    // either budget spent whole takes three to seven seconds of one core,
    // while 500 guides on an 8K picture, or a 1-px grid over a whole
    // 16384 x 16384 one, stay within it.
    static constexpr double maxGuidePixels = 17179869184;   // 2^34: guides x picture area
    static constexpr double maxGridLinePixels = 536870912;  // 2^29: grid lines x their length
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

// What drawing a document that checkDocument passed would cost at `drawn`
// (its canvas scaled to that size, in pixels or points): a problem for each
// budget of DrawingLimits it passes, naming the numbers and the limit. Hosts
// ask with the size they draw at, so a large canvas drawn small still draws.
std::vector<DocumentProblem> checkDrawingCost(const OverlayGen& document, CGSize drawn);

}  // namespace vantel
