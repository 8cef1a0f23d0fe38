#pragma once

#include <Graphics2/CGContext.hpp>

#include <functional>

namespace vantel {

// The answer to a preview request: how large a context the preview wants, of
// which kind, and how to draw into it once the host supplies one. The host
// prepares the context (its size, scale and orientation) before drawing.
class QLPreviewReply {
public:
    using DrawingBlock = std::function<void(CGContext&, const QLPreviewReply&)>;

    // `isBitmap` false asks for a vector context (a PDF page, say).
    QLPreviewReply(CGSize contextSize, bool isBitmap, DrawingBlock drawUsing)
        : contextSize(contextSize), isBitmap(isBitmap), drawUsing_(std::move(drawUsing)) {}

    CGSize contextSize;
    bool isBitmap;

    // Runs the drawing block with this reply; its exceptions pass through.
    void draw(CGContext& context) const { drawUsing_(context, *this); }

private:
    DrawingBlock drawUsing_;
};

}  // namespace vantel
