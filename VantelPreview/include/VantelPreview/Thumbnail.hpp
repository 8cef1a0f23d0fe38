#pragma once

// What a thumbnail host does with a reply: supply a bitmap of the thumbnail's
// size, fit the reply's context into it, run the drawing, encode the pixels.

#include <CoreGraphicsRendering/BitmapContext.hpp>
#include <Graphics2/CGContext.hpp>
#include <Platform/Data.hpp>
#include <VantelPreview/QLPreviewReply.hpp>

namespace vantel {

struct ThumbnailSize {
    int width = 0;
    int height = 0;
    friend bool operator==(const ThumbnailSize&, const ThumbnailSize&) = default;
};

// The context's aspect in whole pixels with the longer side `maxSide` (small
// contexts are scaled up); the shorter side is rounded and at least 1.
// A context side at or below zero throws RenderError::dimensionIsZero; a side
// that is not finite, or `maxSide` below 1, stops the process.
ThumbnailSize thumbnailSize(CGSize contextSize, int maxSide);

// The reply drawn into a fresh, transparent bitmap of thumbnailSize().
BitmapContext drawThumbnail(const QLPreviewReply& reply, int maxSide);

// drawThumbnail() as PNG data. Drawing errors pass through; a failed drawing
// throws CairoError.
Data thumbnailPNG(const QLPreviewReply& reply, int maxSide);

}  // namespace vantel
