#include "CanvasPicture.hpp"

#include <CoreGraphicsRendering/CairoContext.hpp>

#include <algorithm>
#include <exception>

namespace vantel::preview {

namespace {

constexpr double checkerSquare = 8;

// One tile of two squares across and down, repeated: a single paint however
// large the window, where drawing every square made each frame of a resize
// cost thousands of rectangles.
cairo_pattern_t* checkerPattern() {
    int side = int(2 * checkerSquare);
    cairo_surface_t* tile = cairo_image_surface_create(CAIRO_FORMAT_RGB24, side, side);
    cairo_t* cairo = cairo_create(tile);
    cairo_set_source_rgb(cairo, 0.8, 0.8, 0.8);
    cairo_paint(cairo);
    cairo_set_source_rgb(cairo, 0.6, 0.6, 0.6);
    cairo_rectangle(cairo, checkerSquare, 0, checkerSquare, checkerSquare);
    cairo_rectangle(cairo, 0, checkerSquare, checkerSquare, checkerSquare);
    cairo_fill(cairo);
    cairo_destroy(cairo);
    cairo_pattern_t* pattern = cairo_pattern_create_for_surface(tile);
    cairo_surface_destroy(tile);
    cairo_pattern_set_extend(pattern, CAIRO_EXTEND_REPEAT);
    cairo_pattern_set_filter(pattern, CAIRO_FILTER_NEAREST);
    return pattern;
}

void paintCheckerboard(cairo_t* cairo, double x, double y, double width, double height) {
    static cairo_pattern_t* const checker = checkerPattern();
    cairo_save(cairo);
    cairo_rectangle(cairo, x, y, width, height);
    cairo_clip(cairo);
    cairo_matrix_t atCorner;
    cairo_matrix_init_translate(&atCorner, -x, -y);
    cairo_pattern_set_matrix(checker, &atCorner);
    cairo_set_source(cairo, checker);
    cairo_paint(cairo);
    cairo_restore(cairo);
}

}  // namespace

PictureFrame pictureFrame(CGSize canvas, int width, int height, bool actualSize) {
    double scale = actualSize ? 1.0 : std::min(width / canvas.width, height / canvas.height);
    return {(width - canvas.width * scale) / 2, (height - canvas.height * scale) / 2, scale};
}

bool drawPicture(cairo_t* cairo, const QLPreviewReply& reply, const PictureFrame& frame) {
    CGRect area = frame.onWidget({0, 0, reply.contextSize.width, reply.contextSize.height});
    paintCheckerboard(cairo, area.x, area.y, area.width, area.height);
    cairo_save(cairo);
    // The picture goes into a group of its own, laid over the checkerboard:
    // a guide that clears what is beneath it must uncover the checkerboard,
    // not erase it down to the window's background.
    cairo_rectangle(cairo, area.x, area.y, area.width, area.height);
    cairo_clip(cairo);
    cairo_push_group(cairo);
    CairoContext context(cairo);
    context.translateCTM(frame.x, frame.y);
    context.scaleCTM(frame.scale, frame.scale);
    bool drawn = true;
    try {
        reply.draw(context);
    } catch (const std::exception&) {
        drawn = false;
    }
    cairo_pop_group_to_source(cairo);
    cairo_paint(cairo);
    cairo_restore(cairo);
    return drawn;
}

}  // namespace vantel::preview
