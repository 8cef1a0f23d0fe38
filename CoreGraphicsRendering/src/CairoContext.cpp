#include <CoreGraphicsRendering/CairoContext.hpp>

#include <cairo.h>

#include <string>

namespace vantel {

CairoError::CairoError(int status)
    : std::runtime_error(std::string("cairo drawing failed: ") +
                         cairo_status_to_string(static_cast<cairo_status_t>(status))),
      status(status) {}

void CairoContext::Release::operator()(cairo_t* cairo) const { cairo_destroy(cairo); }

CairoContext::CairoContext(cairo_t* cairo) : CairoContext(cairo_reference(cairo), true) {}

CairoContext::CairoContext(cairo_t* cairo, bool /*adopt*/) : cairo_(cairo) {
    // cairo starts at width 2; the platform context starts at 1.
    cairo_set_line_width(cairo, 1.0);
}

CairoContext CairoContext::onSurface(cairo_surface_t* surface) { return CairoContext(cairo_create(surface), true); }

void CairoContext::checkStatus() const {
    cairo_status_t status = cairo_status(cairo_.get());
    if (status != CAIRO_STATUS_SUCCESS) throw CairoError(status);
}

std::optional<ImageView> CairoContext::targetImage() const {
    cairo_surface_t* target = cairo_get_target(cairo_.get());
    if (cairo_surface_get_type(target) != CAIRO_SURFACE_TYPE_IMAGE ||
        cairo_image_surface_get_format(target) != CAIRO_FORMAT_ARGB32) {
        return std::nullopt;
    }
    cairo_surface_flush(target);
    return ImageView{cairo_image_surface_get_width(target), cairo_image_surface_get_height(target),
                     cairo_image_surface_get_stride(target), cairo_image_surface_get_data(target)};
}

void CairoContext::saveGState() {
    cairo_save(cairo_.get());
    savedPaint_.push_back(paint_);
}

void CairoContext::restoreGState() {
    // Like the platform, an unbalanced restore is ignored (cairo would turn
    // it into a sticky error).
    if (savedPaint_.empty()) return;
    cairo_restore(cairo_.get());
    paint_ = savedPaint_.back();
    savedPaint_.pop_back();
}

void CairoContext::setStrokeColor(double red, double green, double blue, double alpha) {
    paint_.stroke = {red, green, blue, alpha};
}

void CairoContext::setFillColor(double red, double green, double blue, double alpha) {
    paint_.fill = {red, green, blue, alpha};
}

void CairoContext::setLineWidth(double width) { cairo_set_line_width(cairo_.get(), width); }

void CairoContext::rotateCTM(double radians) { cairo_rotate(cairo_.get(), radians); }

void CairoContext::translateCTM(double tx, double ty) { cairo_translate(cairo_.get(), tx, ty); }

void CairoContext::scaleCTM(double sx, double sy) { cairo_scale(cairo_.get(), sx, sy); }

void CairoContext::concatCTM(const CGAffineTransform& t) {
    cairo_matrix_t matrix;
    cairo_matrix_init(&matrix, t.a, t.b, t.c, t.d, t.tx, t.ty);
    cairo_transform(cairo_.get(), &matrix);
}

void CairoContext::moveTo(double x, double y) { cairo_move_to(cairo_.get(), x, y); }

void CairoContext::addLineTo(double x, double y) { cairo_line_to(cairo_.get(), x, y); }

void CairoContext::strokePath() {
    setSource(paint_.stroke);
    cairo_stroke(cairo_.get());
}

void CairoContext::fillRect(const CGRect& rect) {
    addRectangle(rect);
    setSource(paint_.fill);
    cairo_fill(cairo_.get());
}

void CairoContext::strokeRect(const CGRect& rect) {
    addRectangle(rect);
    setSource(paint_.stroke);
    cairo_stroke(cairo_.get());
}

void CairoContext::clearRect(const CGRect& rect) {
    cairo_t* cairo = cairo_.get();
    cairo_operator_t previous = cairo_get_operator(cairo);
    addRectangle(rect);
    cairo_set_operator(cairo, CAIRO_OPERATOR_CLEAR);
    cairo_fill(cairo);
    cairo_set_operator(cairo, previous);
}

void CairoContext::setSource(const RGBA& c) { cairo_set_source_rgba(cairo_.get(), c.red, c.green, c.blue, c.alpha); }

void CairoContext::addRectangle(const CGRect& rect) {
    // The rectangle operations stand alone: whatever path was begun is dropped.
    cairo_new_path(cairo_.get());
    cairo_rectangle(cairo_.get(), rect.x, rect.y, rect.width, rect.height);
}

}  // namespace vantel
