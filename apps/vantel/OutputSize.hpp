#pragma once

// The size `vantel render` draws at: the canvas's own, or the one asked for
// with --width, --height, --zoom and --stretch. The drawing is scaled as a
// whole, so a smaller output is the same picture, smaller.

#include <Graphics2/CGContext.hpp>

#include <optional>

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

// The output's size for a canvas. One side given: the other follows the
// canvas's aspect. Both: the largest size of the canvas's aspect inside
// them, or exactly them with `stretch`. Zoom: the canvas's sides times it.
CGSize requestedSize(CGSize canvas, const SizeRequest& request);

// The same rounded to whole pixels, at least one each way.
CGSize requestedPixelSize(CGSize canvas, const SizeRequest& request);

}  // namespace vantel::cli
