// Un-premultiplying rows, shared by every encoder. Opaque pixels, the bulk of
// most pictures, need only a byte swizzle, which the compiler vectorises; the
// others are looked up in a table instead of dividing.

#include "Encoders.hpp"

#include <array>
#include <bit>

namespace vantel::pixels {

namespace {

// straight = round(premultiplied * 255 / alpha), indexed [alpha][premultiplied].
using UnpremultiplyTable = std::array<std::array<std::uint8_t, 256>, 256>;

const UnpremultiplyTable& unpremultiplyTable() {
    static const UnpremultiplyTable table = [] {
        UnpremultiplyTable result{};
        for (unsigned alpha = 1; alpha < 256; ++alpha) {
            for (unsigned value = 0; value < 256; ++value) {
                unsigned straight = (value * 255 + alpha / 2) / alpha;
                result[alpha][value] = static_cast<std::uint8_t>(straight > 255 ? 255 : straight);
            }
        }
        return result;
    }();
    return table;
}

inline std::uint32_t packRGBA(std::uint32_t red, std::uint32_t green, std::uint32_t blue, std::uint32_t alpha) {
    if constexpr (std::endian::native == std::endian::little) {
        return red | green << 8 | blue << 16 | alpha << 24;
    } else {
        return red << 24 | green << 16 | blue << 8 | alpha;
    }
}

inline std::uint32_t channel(std::uint32_t argb, int shift) { return (argb >> shift) & 0xff; }

}  // namespace

void straightRow(const ImageView& image, int y, std::uint32_t* __restrict rgba) {
    const std::uint32_t* __restrict row = image.row(y);
    std::uint32_t allAlpha = 0xff;
    for (int x = 0; x < image.width; ++x) {
        std::uint32_t p = row[x];
        rgba[x] = packRGBA(channel(p, 16), channel(p, 8), channel(p, 0), channel(p, 24));
        allAlpha &= channel(p, 24);
    }
    if (allAlpha == 0xff) return;

    // Translucent areas are flat too: a run of one pixel converts once.
    const UnpremultiplyTable& table = unpremultiplyTable();
    std::uint32_t last = 0xff000000, lastStraight = 0;  // opaque: never matches below
    for (int x = 0; x < image.width; ++x) {
        std::uint32_t p = row[x];
        if (channel(p, 24) == 0xff) continue;
        if (p != last) {
            const auto& scale = table[channel(p, 24)];
            last = p;
            lastStraight = packRGBA(scale[channel(p, 16)], scale[channel(p, 8)], scale[channel(p, 0)], channel(p, 24));
        }
        rgba[x] = lastStraight;
    }
}

}  // namespace vantel::pixels
