#pragma once

// Rectangles on the canvas as `vantel info` and the editor print them.

#include <Graphics2/CGContext.hpp>
#include <Platform/NumberText.hpp>

#include <cmath>
#include <string>

namespace vantel::cli {

// Whole pixels: each edge rounded, so that neighbouring boxes share edges.
inline CGRect snapped(const CGRect& rect) {
    double left = std::round(rect.x), top = std::round(rect.y);
    return {left, top, std::round(rect.x + rect.width) - left, std::round(rect.y + rect.height) - top};
}

// Laid-out sizes to two decimals: enough to place a guide, short enough to read.
inline std::string pixelsText(double value) { return numberText(std::round(value * 100) / 100); }

}  // namespace vantel::cli
