#pragma once

#include <cstddef>
#include <cstdint>

namespace vantel {

// A read-only view of pixels in cairo's ARGB32 layout: one native-endian
// 32-bit word per pixel, 0xAARRGGBB with premultiplied colour, rows `stride`
// bytes apart, top row first (`pixels` and `stride` 4-byte aligned, as cairo
// makes them). The view does not own the memory.
struct ImageView {
    int width = 0;
    int height = 0;
    int stride = 0;
    const std::uint8_t* pixels = nullptr;

    const std::uint32_t* row(int y) const {
        return reinterpret_cast<const std::uint32_t*>(pixels + static_cast<std::ptrdiff_t>(y) * stride);
    }
};

}  // namespace vantel
