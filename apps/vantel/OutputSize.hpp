#pragma once

// The size `vantel render` draws at: the canvas's own, or the one asked for
// with --width, --height, --zoom and --stretch. The drawing is scaled as a
// whole, so a smaller output is the same picture, smaller.

#include "OutputFormat.hpp"

#include <Graphics2/CGContext.hpp>
#include <OverlayGenerator/OverlayGen.hpp>

#include <optional>
#include <string>

namespace vantel::cli {

struct SizeRequest {
    std::optional<double> width;
    std::optional<double> height;
    std::optional<double> zoom;
    bool stretch = false;

    bool keepsCanvasSize() const { return !width && !height && !zoom; }
};

// Throws CLI::ValidationError for sides or zoom that are not above zero,
// --zoom with a side, and --stretch without both sides.
void checkSizeRequest(const SizeRequest& request);

// The output's size for a canvas, the same for every format: bitmaps get
// that many pixels, PDF pages and SVG pictures that many points or pixels.
// One side given: the other follows the canvas's aspect. Both: the largest
// size of the canvas's aspect inside them, or exactly them with `stretch`.
// Zoom: the canvas's sides times it. Each side rounded to the nearest whole
// number, at least 1.
CGSize outputSize(CGSize canvas, const SizeRequest& request);

// Bytes the output holds at its peak while drawn and encoded at `size`; 0
// for the vector formats, which hold no bitmap.
double outputMemory(const OutputFormat& format, CGSize size);

// Why the command does not draw the document as a bitmap `format` at
// `size`: past the side limit or the memory one picture may hold, or a
// drawing past the document's cost budgets at that size. Sizes are chosen
// on the command line, so these are usage errors; empty when it may draw.
// Vector pages cost what they hold whatever their size: never refused.
std::optional<std::string> refusedOutput(const OverlayGen& document, const OutputFormat& format, CGSize size);
// The same without the document's costs: the limits every picture meets.
std::optional<std::string> refusedOutputSize(const OutputFormat& format, CGSize size);

}  // namespace vantel::cli
