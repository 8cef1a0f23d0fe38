#include <CoreGraphicsRendering/PDFDocument.hpp>

#include "PageSize.hpp"

#include <CoreGraphicsRendering/CairoContext.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>
#include <Platform/Fatal.hpp>
#include <Platform/NumberText.hpp>

#include <cairo-pdf.h>
#include <cairo.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <string>
#include <cstdint>
#include <memory>
#include <optional>

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
    void setLineDash(std::span<const double> lengths) override { page_.setLineDash(lengths); }
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

void checkSurface(cairo_surface_t* surface) {
    cairo_status_t status = cairo_surface_status(surface);
    if (status != CAIRO_STATUS_SUCCESS) throw CairoError(status);
}

// SOURCE_DATE_EPOCH in UTC, or nothing (which leaves the date out) when it is
// unset or not a number of seconds.
std::optional<std::tm> reproducibleDate() {
    const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
    if (epoch == nullptr) return std::nullopt;
    char* end = nullptr;
    errno = 0;
    long long seconds = std::strtoll(epoch, &end, 10);
    if (errno != 0 || end == epoch || *end != '\0' || seconds < 0) return std::nullopt;
    std::time_t time = static_cast<std::time_t>(seconds);
    std::tm utc{};
    if (gmtime_r(&time, &utc) == nullptr) return std::nullopt;
    return utc;
}

std::string formatted(const std::tm& date, const char* format) {
    char text[64];
    return std::string(text, std::strftime(text, sizeof text, format, &date));
}

// Cairo takes the date in ISO 8601 and, before 1.17.6, writes it without the
// "D:" every PDF date starts with. Given a "+00:00" zone it writes
// "20231114221320+00'00", long enough to put "D:...Z" in its place padded
// with spaces outside the string, so no offset of the cross-reference
// table moves. A cairo that writes the prefix itself is left alone.
void prefixCreationDate(Data& pdf, const std::tm& date) {
    const std::string digits = formatted(date, "%Y%m%d%H%M%S");
    const std::string written = "/CreationDate (" + digits + "+00'00)";
    const std::string wanted = "/CreationDate (D:" + digits + "Z)   ";
    auto at = std::search(pdf.begin(), pdf.end(), written.begin(), written.end());
    if (at != pdf.end()) std::copy(wanted.begin(), wanted.end(), at);
}

}  // namespace

Data drawPDF(CGSize pageSize, const std::function<void(CGContext&)>& draw) {
    return drawPDF(std::vector<PDFPage>{{pageSize, draw}});
}

Data drawPDF(const std::vector<PDFPage>& pages) {
    if (pages.empty()) throw RenderError::dimensionIsZero(0, 0);
    for (const PDFPage& page : pages) checkPageSize(page.size, "PDF page");
    Data data;
    std::unique_ptr<cairo_surface_t, SurfaceRelease> surface(cairo_pdf_surface_create_for_stream(
        appendToData, &data, pages.front().size.width, pages.front().size.height));
    checkSurface(surface.get());
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATOR, "Vantel");
    // Left unset, cairo would write the time of the run; an empty date leaves it out.
    const std::optional<std::tm> date = reproducibleDate();
    const std::string iso = date ? formatted(*date, "%Y-%m-%dT%H:%M:%S+00:00") : "";
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, iso.c_str());
    {
        CairoContext cairo = CairoContext::onSurface(surface.get());
        for (const PDFPage& page : pages) {
            cairo_pdf_surface_set_size(surface.get(), page.size.width, page.size.height);
            cairo.saveGState();
            PDFPageContext context(cairo);
            page.draw(context);
            cairo.restoreGState();
            cairo.checkStatus();
            cairo_show_page(cairo.cairo());
        }
    }
    cairo_surface_finish(surface.get());
    checkSurface(surface.get());
    if (date) prefixCreationDate(data, *date);
    return data;
}

}  // namespace vantel
