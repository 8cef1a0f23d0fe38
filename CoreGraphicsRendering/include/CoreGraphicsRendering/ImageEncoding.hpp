#pragma once

#include <CoreGraphicsRendering/ImageView.hpp>
#include <Platform/Data.hpp>

#include <cstdint>
#include <string>

namespace vantel {

// The image file types a bitmap can be written as, with the raw values the
// platform's bitmap encoder gives them (stored documents and command lines
// may carry the number).
enum class NSBitmapImageFileType : std::uint64_t {
    tiff = 0,
    bmp = 1,
    gif = 2,
    jpeg = 3,
    png = 4,
    jpeg2000 = 5,
};

// "tiff", "bmp", "gif", "jpeg", "png", "jpeg2000". Any other raw value is a
// programming error and stops the process.
std::string fileExtension(NSBitmapImageFileType type);

// Encodes the pixels as a complete file of the given type with the encoder's
// default settings. Colour is un-premultiplied first; every format keeps the
// alpha channel except JPEG, which has none and is composited over white.
// Throws RenderError::dimensionIsZero for an empty view and
// RenderError::failedToRenderPNGRepresentation when the encoder fails.
Data encodeImage(const ImageView& image, NSBitmapImageFileType type);

// PNG at a chosen zlib level (0...9), for measuring; encodeImage uses
// defaultPNGCompressionLevel. Measured on overlays (bench/png_encode_bench):
// levels 1 to 3 are equally fast and within 3% in size; 4 and above take
// twice the time for files a third the size (a 1920x1080 overlay: 43 KB at
// level 1, 13 KB at 6), and 9 ten times the time on busy pictures.
inline constexpr int defaultPNGCompressionLevel = 1;
Data encodePNG(const ImageView& image, int compressionLevel = defaultPNGCompressionLevel);

}  // namespace vantel
