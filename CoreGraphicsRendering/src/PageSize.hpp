#pragma once

#include <CoreGraphicsRendering/RenderError.hpp>
#include <Graphics2/CGContext.hpp>
#include <Platform/Fatal.hpp>
#include <Platform/NumberText.hpp>

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

namespace vantel {

// The size of a vector page (PDF or SVG): a side that is not finite is a
// programming error; one below or at zero is a picture too small to draw.
inline void checkPageSize(CGSize size, std::string_view what) {
    if (!std::isfinite(size.width) || !std::isfinite(size.height)) {
        fatalError(std::string(what) + " size is not finite: " + numberText(size.width) + " x " +
                   numberText(size.height));
    }
    if (size.width <= 0 || size.height <= 0) {
        // Finite here; clamp so that the conversion is defined for any double.
        auto whole = [](double side) {
            return static_cast<std::int64_t>(std::fmax(-9.0e18, std::fmin(side, 9.0e18)));
        };
        throw RenderError::dimensionIsZero(whole(size.width), whole(size.height));
    }
}

}  // namespace vantel
