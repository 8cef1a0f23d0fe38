#include <CoreGraphicsRendering/BitmapContext.hpp>
#include <CoreGraphicsRendering/CairoContext.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>

#include <cairo.h>
#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <numbers>
#include <cstdio>
#include <string>
#include <vector>

using vantel::BitmapContext;
using vantel::CairoContext;
using vantel::CGRect;
using vantel::testing::thrownBy;

namespace {

// The pixel as 8 hex digits AARRGGBB (premultiplied), readable in failures.
std::string pixel(const BitmapContext& bitmap, int x, int y) {
    char text[9];
    std::snprintf(text, sizeof text, "%08x", bitmap.image().row(y)[x]);
    return text;
}

constexpr const char* transparent = "00000000";
constexpr const char* black = "ff000000";
constexpr const char* red = "ffff0000";
constexpr const char* blue = "ff0000ff";

}  // namespace

TEST(CairoContextTest, FillAndStrokeKeepSeparateColoursBlackByDefault) {
    BitmapContext bitmap(60, 40);
    CairoContext& context = bitmap.context();
    context.fillRect(CGRect{10, 10, 10, 10});
    context.setFillColor(1, 0, 0, 1);
    context.setStrokeColor(0, 0, 1, 1);
    context.fillRect(CGRect{30, 10, 10, 10});
    context.strokeRect(CGRect{10.5, 30.5, 20, 5});

    EXPECT_EQ(pixel(bitmap, 15, 15), black);
    EXPECT_EQ(pixel(bitmap, 35, 15), red);
    EXPECT_EQ(pixel(bitmap, 20, 30), blue);  // outline
    EXPECT_EQ(pixel(bitmap, 20, 33), transparent);  // a stroked rectangle is not filled
    EXPECT_EQ(pixel(bitmap, 5, 5), transparent);
    EXPECT_EQ(pixel(bitmap, 59, 39), transparent);
    EXPECT_NO_THROW(context.checkStatus());
}

TEST(CairoContextTest, LinesAreOnePixelWideUntilTheWidthChanges) {
    BitmapContext bitmap(40, 40);
    CairoContext& context = bitmap.context();
    // On a pixel centre a width-1 line covers exactly one pixel column.
    context.moveTo(10.5, 5);
    context.addLineTo(10.5, 35);
    context.strokePath();
    EXPECT_EQ(pixel(bitmap, 10, 20), black);
    EXPECT_EQ(pixel(bitmap, 9, 20), transparent);
    EXPECT_EQ(pixel(bitmap, 11, 20), transparent);

    context.setLineWidth(3);
    context.strokeRect(CGRect{20.5, 10.5, 10, 10});
    EXPECT_EQ(pixel(bitmap, 19, 15), black);
    EXPECT_EQ(pixel(bitmap, 21, 15), black);
    EXPECT_EQ(pixel(bitmap, 22, 15), transparent);
}

// A line along y = 5.5 from x = 0, dashed 4 on, 2 off, unless restored or
// given a pattern cairo would refuse (which must not stop all drawing).
TEST(CairoContextTest, DashesLeaveGapsUntilRestoredAndUnusablePatternsStrokeSolid) {
    BitmapContext bitmap(40, 20);
    CairoContext& context = bitmap.context();
    auto line = [&](double y) {
        context.moveTo(0, y);
        context.addLineTo(40, y);
        context.strokePath();
    };
    const double dash[] = {4, 2};
    context.saveGState();
    context.setLineDash(dash);
    line(5.5);
    context.restoreGState();
    line(10.5);
    for (const std::vector<double>& unusable : {std::vector<double>{0, 0}, {-1, 2}, {}}) {
        context.setLineDash(unusable);
        line(15.5);
    }
    EXPECT_EQ(pixel(bitmap, 1, 5), black);
    EXPECT_EQ(pixel(bitmap, 4, 5), transparent);
    EXPECT_EQ(pixel(bitmap, 7, 5), black);
    EXPECT_EQ(pixel(bitmap, 4, 10), black);
    EXPECT_EQ(pixel(bitmap, 4, 15), black);
    EXPECT_NO_THROW(context.checkStatus());
}

TEST(CairoContextTest, PathsAreStrokedInTheStrokeColourAndThenCleared) {
    BitmapContext bitmap(20, 20);
    CairoContext& context = bitmap.context();
    context.setFillColor(1, 0, 0, 1);
    context.setStrokeColor(0, 0, 1, 1);
    context.moveTo(5.5, 0);
    context.addLineTo(5.5, 20);
    context.strokePath();
    context.setStrokeColor(1, 0, 0, 1);
    context.strokePath();  // nothing left to stroke
    EXPECT_EQ(pixel(bitmap, 5, 10), blue);

    // A rectangle operation stands alone: an unstroked path begun before it
    // is dropped, not filled with it.
    context.moveTo(10, 10);
    context.addLineTo(19, 10);
    context.addLineTo(19, 19);
    context.fillRect(CGRect{0, 19, 1, 1});
    EXPECT_EQ(pixel(bitmap, 17, 12), transparent);
    EXPECT_NO_THROW(context.checkStatus());
}

TEST(CairoContextTest, RestoringStateBringsBackColoursWidthAndTransform) {
    BitmapContext bitmap(60, 40);
    CairoContext& context = bitmap.context();
    context.setFillColor(1, 0, 0, 1);
    context.setStrokeColor(0, 0, 1, 1);
    context.setLineWidth(3);
    context.saveGState();
    context.setFillColor(0, 1, 0, 1);
    context.setStrokeColor(1, 1, 1, 1);
    context.setLineWidth(1);
    context.translateCTM(100, 100);
    context.restoreGState();
    context.restoreGState();  // unbalanced: ignored, as the platform does

    context.fillRect(CGRect{10, 10, 10, 10});
    context.strokeRect(CGRect{30.5, 10.5, 20, 20});
    EXPECT_EQ(pixel(bitmap, 15, 15), red);
    EXPECT_EQ(pixel(bitmap, 29, 20), blue);
    EXPECT_EQ(pixel(bitmap, 31, 20), blue);
    EXPECT_NO_THROW(context.checkStatus());
}

TEST(CairoContextTest, ClearRectMakesPixelsTransparentAndLeavesPaintingNormal) {
    BitmapContext bitmap(30, 30);
    CairoContext& context = bitmap.context();
    context.fillRect(CGRect{0, 0, 30, 30});
    context.clearRect(CGRect{10, 10, 10, 10});
    EXPECT_EQ(pixel(bitmap, 15, 15), transparent);
    EXPECT_EQ(pixel(bitmap, 5, 5), black);

    context.setFillColor(1, 0, 0, 0.5);
    context.fillRect(CGRect{0, 0, 30, 30});
    EXPECT_EQ(pixel(bitmap, 15, 15), "80800000");  // painted over, not cleared
    EXPECT_EQ(pixel(bitmap, 5, 5), "ff800000");    // blended over black
}

TEST(CairoContextTest, OriginIsTheTopLeftPixelAndTransformsCompose) {
    BitmapContext bitmap(40, 40);
    CairoContext& context = bitmap.context();
    context.fillRect(CGRect{0, 0, 1, 1});
    EXPECT_EQ(pixel(bitmap, 0, 0), black);
    EXPECT_EQ(pixel(bitmap, 1, 0), transparent);
    EXPECT_EQ(pixel(bitmap, 0, 1), transparent);

    context.saveGState();
    context.translateCTM(10, 20);
    context.scaleCTM(2, 3);
    context.fillRect(CGRect{1, 1, 1, 1});  // x 12...14, y 23...26
    context.restoreGState();
    EXPECT_EQ(pixel(bitmap, 13, 25), black);
    EXPECT_EQ(pixel(bitmap, 11, 25), transparent);

    context.saveGState();
    context.rotateCTM(std::numbers::pi / 2);  // (x, y) -> (-y, x)
    context.fillRect(CGRect{5, -35, 2, 2});
    context.restoreGState();
    EXPECT_EQ(pixel(bitmap, 34, 6), black);

    // (x, y) -> (a x + c y + tx, b x + d y + ty) = (-y + 30, x)
    context.concatCTM(vantel::CGAffineTransform{0, 1, -1, 0, 30, 0});
    context.fillRect(CGRect{30, 10, 2, 2});
    EXPECT_EQ(pixel(bitmap, 19, 31), black);
}

TEST(CairoContextTest, WrapsACallersContextWithItsOwnReferenceAndDefaults) {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 10, 10);
    cairo_t* cairo = cairo_create(surface);
    {
        CairoContext context(cairo);
        cairo_destroy(cairo);  // the wrapper keeps the context alive
        EXPECT_EQ(cairo_get_line_width(context.cairo()), 1.0);
        CairoContext moved = std::move(context);
        moved.fillRect(CGRect{0, 0, 10, 10});
        moved.checkStatus();
    }
    cairo_surface_flush(surface);
    EXPECT_EQ(reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(surface))[55], 0xff000000u);
    cairo_surface_destroy(surface);
}

TEST(CairoContextTest, StickyDrawingErrorsAreThrownWhenChecked) {
    BitmapContext bitmap(10, 10);
    cairo_pop_group_to_source(bitmap.context().cairo());  // no group was pushed
    EXPECT_THROW(bitmap.context().checkStatus(), vantel::CairoError);
}

TEST(BitmapContextTest, UnusableSizesThrowInsteadOfCrashing) {
    EXPECT_EQ(BitmapContext(3, 2).image().width, 3);
    EXPECT_EQ(thrownBy<vantel::RenderError>([] { BitmapContext(0, 100); }),
              vantel::RenderError::dimensionIsZero(0, 100));
    EXPECT_THROW(BitmapContext(-5, 10), vantel::RenderError);
    EXPECT_THROW(BitmapContext(100000, 100000), vantel::CairoError);
    EXPECT_THROW(BitmapContext(std::int64_t(1) << 40, 1), vantel::CairoError);
}

// Bitmaps of 2 MiB and more keep their pixels in memory of their own, which
// must start transparent and stay with the bitmap when it moves.
TEST(BitmapContextTest, LargeBitmapStartsTransparentAndKeepsItsPixelsWhenMoved) {
    BitmapContext first(1920, 1080);
    first.context().setFillColor(1, 0, 0, 1);
    first.context().fillRect(CGRect{100, 100, 10, 10});
    BitmapContext moved = std::move(first);
    EXPECT_EQ(pixel(moved, 0, 0), transparent);
    EXPECT_EQ(pixel(moved, 1919, 1079), transparent);
    EXPECT_EQ(pixel(moved, 105, 105), red);
    moved.context().fillRect(CGRect{1900, 1000, 10, 10});
    EXPECT_EQ(pixel(moved, 1905, 1005), red);
    EXPECT_EQ(moved.image().stride, 4 * 1920);
}
