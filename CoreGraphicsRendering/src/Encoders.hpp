#pragma once

// The per-format encoders behind encodeImage, and the pixel conversion they
// share. Each takes a non-empty view and throws
// RenderError::failedToRenderPNGRepresentation when its library fails.

#include <CoreGraphicsRendering/ImageView.hpp>
#include <Platform/Data.hpp>

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace vantel {

Data encodeTIFF(const ImageView& image);
Data encodeBMP(const ImageView& image);
Data encodeGIF(const ImageView& image);
Data encodeJPEG(const ImageView& image);
Data encodeJPEG2000(const ImageView& image);

void requireNonEmpty(const ImageView& image);  // else RenderError::dimensionIsZero
[[noreturn]] void failToEncode();

namespace pixels {

// straight = round(premultiplied * 255 / alpha), indexed [alpha][premultiplied].
using UnpremultiplyTable = std::array<std::array<std::uint8_t, 256>, 256>;
const UnpremultiplyTable& unpremultiplyTable();

// One ARGB32 premultiplied pixel as straight colour, packed so that its bytes
// in memory read R, G, B, A.
inline std::uint32_t straightRGBA(std::uint32_t argb, const UnpremultiplyTable& table) {
    std::uint32_t alpha = argb >> 24;
    std::uint32_t red = (argb >> 16) & 0xff, green = (argb >> 8) & 0xff, blue = argb & 0xff;
    if (alpha != 255) {
        const auto& scale = table[alpha];
        red = scale[red];
        green = scale[green];
        blue = scale[blue];
    }
    if constexpr (std::endian::native == std::endian::little) {
        return red | green << 8 | blue << 16 | alpha << 24;
    } else {
        return red << 24 | green << 16 | blue << 8 | alpha;
    }
}

// A row of the view as straight R, G, B, A bytes.
inline void straightRow(const ImageView& image, int y, std::uint8_t* rgba) {
    const auto& table = unpremultiplyTable();
    const std::uint32_t* row = image.row(y);
    for (int x = 0; x < image.width; ++x) {
        std::uint32_t packed = straightRGBA(row[x], table);
        std::memcpy(rgba + 4 * static_cast<std::size_t>(x), &packed, 4);
    }
}

}  // namespace pixels
}  // namespace vantel
