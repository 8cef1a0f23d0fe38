#pragma once

// The per-format encoders behind encodeImage, and the pixel conversion they
// share. Each takes a non-empty view and throws
// RenderError::failedToRenderPNGRepresentation when its library fails.

#include <CoreGraphicsRendering/ImageView.hpp>
#include <Platform/Data.hpp>

#include <cstdint>

namespace vantel {

Data encodeTIFF(const ImageView& image);
Data encodeBMP(const ImageView& image);
Data encodeGIF(const ImageView& image);
Data encodeJPEG(const ImageView& image);
Data encodeJPEG2000(const ImageView& image);

void requireNonEmpty(const ImageView& image);  // else RenderError::dimensionIsZero
[[noreturn]] void failToEncode();

namespace pixels {

// Row y of the view as straight (un-premultiplied) colour, one word per
// pixel whose bytes in memory read R, G, B, A: straight = round(premultiplied
// * 255 / alpha), and 0 where alpha is 0.
void straightRow(const ImageView& image, int y, std::uint32_t* rgba);

}  // namespace pixels
}  // namespace vantel
