#include <CoreGraphicsRendering/CairoContext.hpp>

#include <cairo.h>

#include <cmath>
#include <string>

namespace vantel {

namespace {

bool bothFinite(double x, double y) { return std::isfinite(x) && std::isfinite(y); }

// cairo's own test: a finite, non-zero determinant.
bool invertible(cairo_matrix_t matrix) { return cairo_matrix_invert(&matrix) == CAIRO_STATUS_SUCCESS; }

}  // namespace

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

void CairoContext::setLineDash(std::span<const double> lengths) {
    if (!isUsableDash(lengths)) return cairo_set_dash(cairo_.get(), nullptr, 0, 0);
    cairo_set_dash(cairo_.get(), lengths.data(), static_cast<int>(lengths.size()), 0);
}

bool CairoContext::acceptsTransform(const cairo_matrix_t& step) {
    if (paint_.transformUnusable) return false;
    cairo_matrix_t current;
    cairo_matrix_t product;
    cairo_get_matrix(cairo_.get(), &current);
    cairo_matrix_multiply(&product, &step, &current);
    if (invertible(step) && invertible(product)) return true;
    paint_.transformUnusable = true;
    return false;
}

void CairoContext::rotateCTM(double radians) {
    cairo_matrix_t step;
    cairo_matrix_init_rotate(&step, radians);
    if (acceptsTransform(step)) cairo_rotate(cairo_.get(), radians);
}

void CairoContext::translateCTM(double tx, double ty) {
    cairo_matrix_t step;
    cairo_matrix_init_translate(&step, tx, ty);
    if (acceptsTransform(step)) cairo_translate(cairo_.get(), tx, ty);
}

void CairoContext::scaleCTM(double sx, double sy) {
    cairo_matrix_t step;
    cairo_matrix_init_scale(&step, sx, sy);
    if (acceptsTransform(step)) cairo_scale(cairo_.get(), sx, sy);
}

void CairoContext::concatCTM(const CGAffineTransform& t) {
    cairo_matrix_t step;
    cairo_matrix_init(&step, t.a, t.b, t.c, t.d, t.tx, t.ty);
    if (acceptsTransform(step)) cairo_transform(cairo_.get(), &step);
}

void CairoContext::moveTo(double x, double y) {
    if (!bothFinite(x, y)) pathUnusable_ = true;
    if (!pathUnusable_) cairo_move_to(cairo_.get(), x, y);
}

void CairoContext::addLineTo(double x, double y) {
    if (!bothFinite(x, y)) pathUnusable_ = true;
    if (!pathUnusable_) cairo_line_to(cairo_.get(), x, y);
}

void CairoContext::strokePath() {
    bool drawable = !pathUnusable_ && !paint_.transformUnusable;
    pathUnusable_ = false;
    if (!drawable) {
        cairo_new_path(cairo_.get());
        return;
    }
    setSource(paint_.stroke);
    cairo_stroke(cairo_.get());
}

void CairoContext::fillRect(const CGRect& rect) {
    if (!addRectangle(rect)) return;
    setSource(paint_.fill);
    cairo_fill(cairo_.get());
}

void CairoContext::strokeRect(const CGRect& rect) {
    if (!addRectangle(rect)) return;
    setSource(paint_.stroke);
    cairo_stroke(cairo_.get());
}

void CairoContext::clearRect(const CGRect& rect) {
    cairo_t* cairo = cairo_.get();
    if (!addRectangle(rect)) return;
    cairo_operator_t previous = cairo_get_operator(cairo);
    cairo_set_operator(cairo, CAIRO_OPERATOR_CLEAR);
    cairo_fill(cairo);
    cairo_set_operator(cairo, previous);
}

void CairoContext::paintBehind(double red, double green, double blue) {
    cairo_t* cairo = cairo_.get();
    cairo_save(cairo);
    cairo_identity_matrix(cairo);
    cairo_reset_clip(cairo);
    cairo_set_operator(cairo, CAIRO_OPERATOR_DEST_OVER);
    cairo_set_source_rgb(cairo, red, green, blue);
    cairo_paint(cairo);
    cairo_restore(cairo);
}

void CairoContext::setSource(const RGBA& c) { cairo_set_source_rgba(cairo_.get(), c.red, c.green, c.blue, c.alpha); }

bool CairoContext::addRectangle(const CGRect& rect) {
    // The rectangle operations stand alone: whatever path was begun is dropped.
    cairo_new_path(cairo_.get());
    pathUnusable_ = false;
    if (paint_.transformUnusable || !bothFinite(rect.x, rect.y) || !bothFinite(rect.width, rect.height)) return false;
    cairo_rectangle(cairo_.get(), rect.x, rect.y, rect.width, rect.height);
    return true;
}

}  // namespace vantel
