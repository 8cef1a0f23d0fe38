#include <CoreGraphicsRendering/BandedDrawing.hpp>
#include <CoreGraphicsRendering/BitmapContext.hpp>
#include <CoreGraphicsRendering/CairoContext.hpp>

#include <cairo.h>
#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <stdexcept>

using namespace vantel;
using vantel::testing::thrownBy;

namespace {

constexpr int canvasWidth = 1301, canvasHeight = 1033;

// What overlays draw, and more: translucent fills and strokes on fractional
// coordinates, lines straight and slanted, a rotated square, cleared holes,
// all under a scale that is not whole, as `vantel render --width` sets.
void manyShapes(CGContext& context) {
    context.scaleCTM(0.731, 0.913);
    std::uint32_t state = 15;
    auto next = [&](double range) {
        state = state * 1664525u + 1013904223u;
        return range * (state >> 8) / double(1u << 24);
    };
    for (int i = 0; i < 60; ++i) {
        context.setFillColor(next(1), next(1), next(1), 0.05 + next(0.5));
        context.setStrokeColor(next(1), next(1), next(1), 0.5 + next(0.5));
        context.setLineWidth(0.5 + next(9));
        CGRect rect{next(1700), next(1100), next(900), next(700)};
        context.fillRect(rect);
        context.strokeRect(rect);
        context.moveTo(next(1800), next(1200));
        context.addLineTo(next(1800), next(1200));
        context.strokePath();
        if (i % 10 == 0) context.clearRect({next(1700), next(1100), next(200), next(200)});
    }
    context.saveGState();
    context.translateCTM(800.25, 600.5);
    context.rotateCTM(0.3);
    context.setFillColor(0.9, 0.2, 0.1, 0.4);
    context.fillRect({-300, -300, 600, 600});
    context.restoreGState();
}

bool samePixels(const BitmapContext& a, const BitmapContext& b) {
    ImageView x = a.image(), y = b.image();
    for (int row = 0; row < x.height; ++row) {
        if (std::memcmp(x.row(row), y.row(row), 4 * static_cast<std::size_t>(x.width)) != 0) {
            ADD_FAILURE() << "row " << row << " differs";
            return false;
        }
    }
    return true;
}

}  // namespace

// Named for the thread-sanitizer run, which takes the Concurren... tests.
TEST(BandedDrawingConcurrencyTest, BandsOnSeveralThreadsGiveExactlyThePixelsOfOneContext) {
    BitmapContext single(canvasWidth, canvasHeight);
    manyShapes(single.context());
    for (int rows : {1, 7, 64, canvasHeight}) {
        SCOPED_TRACE(rows);
        BitmapContext banded(canvasWidth, canvasHeight);
        drawInBands(banded, manyShapes, rows, 3);
        EXPECT_TRUE(samePixels(single, banded));
        EXPECT_NO_THROW(banded.context().checkStatus());
    }
    BitmapContext automatic(canvasWidth, canvasHeight);
    drawOnAllCores(automatic, manyShapes);
    EXPECT_TRUE(samePixels(single, automatic));
}

TEST(BandedDrawingConcurrencyTest, AFailedDrawingFailsTheBitmapsOwnContextAsOneContextWould) {
    auto broken = [](CGContext& context) {
        context.fillRect({0, 0, 10, 10});
        // An unbalanced restore behind the context's back: cairo's sticky error.
        cairo_restore(dynamic_cast<CairoContext&>(context).cairo());
        context.fillRect({0, 0, 10, 10});
    };
    BitmapContext single(200, 100), banded(200, 100);
    broken(single.context());
    drawInBands(banded, broken, 16, 2);
    EXPECT_EQ(thrownBy<CairoError>([&] { single.context().checkStatus(); }).status,
              thrownBy<CairoError>([&] { banded.context().checkStatus(); }).status);
}

TEST(BandedDrawingConcurrencyTest, AnExceptionFromTheDrawingReachesTheCaller) {
    BitmapContext bitmap(100, 100);
    int calls = 0;
    auto throwing = [&](CGContext& context) {
        context.fillRect({0, 0, 1, 1});
        ++calls;
        throw std::runtime_error("stop");
    };
    EXPECT_THROW(drawInBands(bitmap, throwing, 10, 1), std::runtime_error);
    EXPECT_EQ(calls, 1);  // no band is started after one has failed
}
