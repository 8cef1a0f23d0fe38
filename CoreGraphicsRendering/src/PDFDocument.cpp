#include <CoreGraphicsRendering/PDFDocument.hpp>

#include <CoreGraphicsRendering/CairoContext.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>
#include <Platform/Fatal.hpp>
#include <Platform/NumberText.hpp>

#include <cairo-pdf.h>
#include <cairo.h>

#include <cmath>
#include <cstdint>
#include <memory>

namespace vantel {

namespace {

// The page's drawing context: a cairo context whose clearing paints the
// paper, because cairo can only emulate a clear on a PDF page with a
// rasterised fallback image.
class PDFPageContext final : public CGContext {
public:
    explicit PDFPageContext(CairoContext& page) : page_(page) {}

    void saveGState() override { page_.saveGState(); }
    void restoreGState() override { page_.restoreGState(); }
    void setStrokeColor(double r, double g, double b, double a) override { page_.setStrokeColor(r, g, b, a); }
    void setFillColor(double r, double g, double b, double a) override { page_.setFillColor(r, g, b, a); }
    void setLineWidth(double width) override { page_.setLineWidth(width); }
    void rotateCTM(double radians) override { page_.rotateCTM(radians); }
    void translateCTM(double tx, double ty) override { page_.translateCTM(tx, ty); }
    void scaleCTM(double sx, double sy) override { page_.scaleCTM(sx, sy); }
    void concatCTM(const CGAffineTransform& transform) override { page_.concatCTM(transform); }
    void moveTo(double x, double y) override { page_.moveTo(x, y); }
    void addLineTo(double x, double y) override { page_.addLineTo(x, y); }
    void strokePath() override { page_.strokePath(); }
    void fillRect(const CGRect& rect) override { page_.fillRect(rect); }
    void strokeRect(const CGRect& rect) override { page_.strokeRect(rect); }

    void clearRect(const CGRect& rect) override {
        page_.saveGState();
        page_.setFillColor(1, 1, 1, 1);
        page_.fillRect(rect);
        page_.restoreGState();
    }

private:
    CairoContext& page_;
};

struct SurfaceRelease {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};

cairo_status_t appendToData(void* closure, const unsigned char* bytes, unsigned int length) {
    static_cast<Data*>(closure)->insert(static_cast<Data*>(closure)->end(), bytes, bytes + length);
    return CAIRO_STATUS_SUCCESS;
}

void checkPageSize(CGSize size) {
    if (!std::isfinite(size.width) || !std::isfinite(size.height)) {
        fatalError("PDF page size is not finite: " + numberText(size.width) + " x " + numberText(size.height));
    }
    if (size.width <= 0 || size.height <= 0) {
        // Finite here; clamp so that the conversion is defined for any double.
        auto whole = [](double side) {
            return static_cast<std::int64_t>(std::fmax(-9.0e18, std::fmin(side, 9.0e18)));
        };
        throw RenderError::dimensionIsZero(whole(size.width), whole(size.height));
    }
}

void checkSurface(cairo_surface_t* surface) {
    cairo_status_t status = cairo_surface_status(surface);
    if (status != CAIRO_STATUS_SUCCESS) throw CairoError(status);
}

}  // namespace

Data drawPDF(CGSize pageSize, const std::function<void(CGContext&)>& draw) {
    checkPageSize(pageSize);
    Data data;
    std::unique_ptr<cairo_surface_t, SurfaceRelease> surface(
        cairo_pdf_surface_create_for_stream(appendToData, &data, pageSize.width, pageSize.height));
    checkSurface(surface.get());
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATOR, "Vantel");
    {
        CairoContext cairo = CairoContext::onSurface(surface.get());
        PDFPageContext page(cairo);
        draw(page);
        cairo.checkStatus();
    }
    cairo_surface_finish(surface.get());
    checkSurface(surface.get());
    return data;
}

}  // namespace vantel
