#pragma once

// How the windows show a document: the preview reply's drawing, fitted and
// centred in a widget (or at 100 %), over a checkerboard that guides which
// clear what is beneath uncover. The preview window and the editor draw
// through here, so both show what `vantel render` draws.

#include <Graphics2/CGContext.hpp>
#include <VantelPreview/QLPreviewReply.hpp>

#include <cairo.h>

namespace vantel::preview {

// Where the canvas lies in the widget: its top left corner and the scale
// from canvas units to widget pixels.
struct PictureFrame {
    double x = 0;
    double y = 0;
    double scale = 1;

    CGRect onWidget(const CGRect& canvasRect) const {
        return {x + canvasRect.x * scale, y + canvasRect.y * scale, canvasRect.width * scale, canvasRect.height * scale};
    }
};

PictureFrame pictureFrame(CGSize canvas, int width, int height, bool actualSize);

// False when the reply's drawing threw; the checkerboard stays then.
bool drawPicture(cairo_t* cairo, const QLPreviewReply& reply, const PictureFrame& frame);

}  // namespace vantel::preview
