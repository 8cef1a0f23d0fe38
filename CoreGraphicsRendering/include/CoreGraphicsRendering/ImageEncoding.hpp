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

// The largest side of a bitmap: cairo's limit for an image surface.
inline constexpr double maxBitmapSide = 32767;

// About how many bytes a picture of width x height pixels holds at its peak
// while it is drawn and encoded as `type`: the bitmap, the encoder's own
// copies and the file in memory. Measured as peak resident size over the
// process's own at 4096 x 4096 (see ARCHITECTURE.md).
double encodingMemory(NSBitmapImageFileType type, double width, double height);

// The most one picture may hold while drawn and encoded: a 16384 x 16384
// PNG, TIFF or JPEG (about 1.1 GiB) fits, and an 8K picture (7680 x 4320) in
// every format; JPEG 2000 at 16384 x 16384 (7.6 GB) does not.
inline constexpr double maxEncodingMemory = double(std::uint64_t(3) << 29);  // 1.5 GiB

// Encodes the pixels as a complete file of the given type with the encoder's
// default settings. Colour is un-premultiplied first; every format keeps the
// alpha channel except JPEG, which has none and is composited over white.
// Throws RenderError::dimensionIsZero for an empty view and
// RenderError::failedToRenderPNGRepresentation when the encoder fails.
Data encodeImage(const ImageView& image, NSBitmapImageFileType type);

// PNG at a chosen zlib level (0...9), for measuring; encodeImage uses
// defaultPNGCompressionLevel. Levels 1 to 3 match greedily and leave overlay
// pictures three to four times larger (a 1920x1080 overlay: 44 KB at level
// 1, 14 KB at 4, 13.4 KB at 9); level 4 is the first with lazy matching and
// the cheapest that keeps files within 1.25x of what rsvg-convert writes,
// for about 1.5 to 2 times level 1's encoding time. libdeflate needs the
// whole filtered picture in memory and, at its levels that match the speed,
// misses that size at 3840x2160. See docs/performance.md.
inline constexpr int defaultPNGCompressionLevel = 4;
Data encodePNG(const ImageView& image, int compressionLevel = defaultPNGCompressionLevel);

}  // namespace vantel
