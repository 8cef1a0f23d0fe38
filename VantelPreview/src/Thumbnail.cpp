#include <VantelPreview/Thumbnail.hpp>

#include <CoreGraphicsRendering/ImageEncoding.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>
#include <Graphics2/SketchDrawing.hpp>
#include <Platform/Fatal.hpp>
#include <Platform/NumberText.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

namespace vantel {

namespace {

void checkContextSize(CGSize size) {
    if (!std::isfinite(size.width) || !std::isfinite(size.height)) {
        fatalError("thumbnail of a context that is not finite: " + numberText(size.width) + " x " +
                   numberText(size.height));
    }
    if (size.width <= 0 || size.height <= 0) {
        auto whole = [](double side) { return static_cast<std::int64_t>(std::max(side, -9.0e18)); };
        throw RenderError::dimensionIsZero(whole(size.width), whole(size.height));
    }
}

int wholePixels(double side) { return std::max(1, static_cast<int>(std::lround(side))); }

}  // namespace

ThumbnailSize thumbnailSize(CGSize contextSize, int maxSide) {
    if (maxSide < 1) fatalError("thumbnail size below one pixel: " + std::to_string(maxSide));
    checkContextSize(contextSize);
    double scale = maxSide / std::max(contextSize.width, contextSize.height);
    return {wholePixels(contextSize.width * scale), wholePixels(contextSize.height * scale)};
}

BitmapContext drawThumbnail(const QLPreviewReply& reply, int maxSide) {
    ThumbnailSize size = thumbnailSize(reply.contextSize, maxSide);
    BitmapContext bitmap(size.width, size.height);
    fitPage(bitmap.context(), reply.contextSize, CGSize{double(size.width), double(size.height)});
    reply.draw(bitmap.context());
    bitmap.context().checkStatus();
    return bitmap;
}

Data thumbnailPNG(const QLPreviewReply& reply, int maxSide) { return encodePNG(drawThumbnail(reply, maxSide).image()); }

}  // namespace vantel
