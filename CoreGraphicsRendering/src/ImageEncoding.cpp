#include <CoreGraphicsRendering/ImageEncoding.hpp>

#include "Encoders.hpp"

#include <CoreGraphicsRendering/RenderError.hpp>
#include <Platform/Fatal.hpp>

namespace vantel {

namespace {

[[noreturn]] void unknownFileType(NSBitmapImageFileType type) {
    fatalError("Unknown file format: NSBitmapImageFileType(rawValue: " +
               std::to_string(static_cast<std::uint64_t>(type)) + ")");
}

}  // namespace

std::string fileExtension(NSBitmapImageFileType type) {
    switch (type) {
        case NSBitmapImageFileType::tiff: return "tiff";
        case NSBitmapImageFileType::bmp: return "bmp";
        case NSBitmapImageFileType::gif: return "gif";
        case NSBitmapImageFileType::jpeg: return "jpeg";
        case NSBitmapImageFileType::png: return "png";
        case NSBitmapImageFileType::jpeg2000: return "jpeg2000";
    }
    unknownFileType(type);
}

// Peak resident bytes per pixel of `vantel render` at 4096 x 4096 (16.7
// million pixels): the bitmap's 4, the file in memory (BMP keeps it whole
// and uncompressed), GIF's colour keys and palette indices, and OpenJPEG's
// 32-bit sample planes and code blocks.
double encodingMemory(NSBitmapImageFileType type, double width, double height) {
    double bytesPerPixel = 0;
    switch (type) {
        case NSBitmapImageFileType::png: bytesPerPixel = 4.5; break;
        case NSBitmapImageFileType::tiff: bytesPerPixel = 4.5; break;
        case NSBitmapImageFileType::bmp: bytesPerPixel = 8.5; break;
        case NSBitmapImageFileType::gif: bytesPerPixel = 9.5; break;
        case NSBitmapImageFileType::jpeg: bytesPerPixel = 4.5; break;
        case NSBitmapImageFileType::jpeg2000: bytesPerPixel = 29; break;
        default: unknownFileType(type);
    }
    return bytesPerPixel * width * height;
}

Data encodeImage(const ImageView& image, NSBitmapImageFileType type) {
    requireNonEmpty(image);
    switch (type) {
        case NSBitmapImageFileType::png: return encodePNG(image);
        case NSBitmapImageFileType::tiff: return encodeTIFF(image);
        case NSBitmapImageFileType::bmp: return encodeBMP(image);
        case NSBitmapImageFileType::gif: return encodeGIF(image);
        case NSBitmapImageFileType::jpeg: return encodeJPEG(image);
        case NSBitmapImageFileType::jpeg2000: return encodeJPEG2000(image);
    }
    unknownFileType(type);
}

void requireNonEmpty(const ImageView& image) {
    if (image.width < 1 || image.height < 1) throw RenderError::dimensionIsZero(image.width, image.height);
}

void failToEncode() { throw RenderError::failedToRenderPNGRepresentation(); }

}  // namespace vantel
