#include <CoreGraphicsRendering/CoreGraphicsRenderer.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>
#include <Graphics2/Angle.hpp>
#include <Graphics2/GroupDrawable.hpp>
#include <Graphics2/Line.hpp>
#include <Graphics2/Rectangle.hpp>
#include <Graphics2/Size.hpp>
#include <Platform/FileIO.hpp>

#include <ImageReaders.hpp>
#include <RecordingContext.hpp>
#include <TestSupport.hpp>

#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <filesystem>

using namespace vantel;
using vantel::testing::PageSketch;
using vantel::testing::readPNG;
using vantel::testing::thrownBy;

namespace {

// Marks which drawing path the renderer chose.
struct PathProbe {
    void draw(CGContext& context) const { context.setLineWidth(1); }
    void debugDraw(CGContext& context) const { context.setLineWidth(2); }
};

// Fills the whole page through a transform that cannot be inverted.
struct ZeroScaledFill {
    void draw(CGContext& context) const {
        context.saveGState();
        context.scaleCTM(0, 1);
        context.fillRect(CGRect{-1000, -1000, 2000, 2000});
        context.restoreGState();
    }
};

Drawable redSquare() {
    return Drawable(Rectangle(Vector::point(5, 5), 10, 10, Angle::fromDegrees(0)))
        .fillColor(Color(1, 0, 0, 1))
        .strokeWidth(0);
}

}  // namespace

TEST(CoreGraphicsRendererTest, PageSizeIsTruncatedToWholePixels) {
    CoreGraphicsRenderer renderer(PageSketch(Size(640.9, 480.2, 0), EmptyDrawable{}));
    auto image = readPNG(renderer.render());
    EXPECT_EQ(image.width, 640);
    EXPECT_EQ(image.height, 480);
    EXPECT_EQ(image.at(320, 240)[3], 0) << "a new bitmap starts transparent";
}

TEST(CoreGraphicsRendererTest, UnusableSidesThrowRenderErrors) {
    EXPECT_EQ(thrownBy<RenderError>([] { CoreGraphicsRenderer(PageSketch(Size(0.5, 100, 0), EmptyDrawable{})); }),
              RenderError::dimensionIsZero(0, 100));
    EXPECT_THROW(CoreGraphicsRenderer(-3, 10, nullptr, false), RenderError);
    auto overLimit =
        thrownBy<RenderError>([] { CoreGraphicsRenderer(PageSketch(Size(32768, 10, 0), EmptyDrawable{})); });
    EXPECT_EQ(overLimit, RenderError::failedToMakeImage());
    EXPECT_NE(std::string(overLimit.what()).find("32768 x 10"), std::string::npos) << overLimit.what();
}

TEST(CoreGraphicsRendererTest, NonFinitePageSizeStops) {
    PageSketch sketch(Size(std::numeric_limits<double>::infinity(), 10, 0), EmptyDrawable{});
    EXPECT_DEATH(CoreGraphicsRenderer{sketch}, "whole pixels");
}

TEST(CoreGraphicsRendererTest, BodyIsDrawnWithTheTopLeftOrigin) {
    CoreGraphicsRenderer renderer(PageSketch(Size(40, 20, 0), redSquare()));
    auto image = readPNG(renderer.render());
    EXPECT_EQ(image.at(0, 0), (std::array<int, 4>{255, 0, 0, 255}));
    EXPECT_EQ(image.at(9, 9), (std::array<int, 4>{255, 0, 0, 255}));
    EXPECT_EQ(image.at(20, 15)[3], 0);
}

TEST(CoreGraphicsRendererTest, ShapesWithUnusableNumbersAreSkippedAndTheRestIsDrawn) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    std::vector<Drawable> shapes{Rectangle(Vector::point(20, 10), 30, 15, Angle::fromDegrees(nan)),
                                 Line(0, 0, infinity, 20), Line(nan, 5, 40, 5), ZeroScaledFill{}, redSquare()};
    CoreGraphicsRenderer renderer(PageSketch(Size(40, 20, 0), GroupDrawable{shapes}));
    auto image = readPNG(renderer.render());
    EXPECT_EQ(image.at(5, 5), (std::array<int, 4>{255, 0, 0, 255}));
    EXPECT_EQ(image.at(30, 15)[3], 0);
    EXPECT_EQ(image.at(30, 5)[3], 0);
}

TEST(CoreGraphicsRendererTest, HandedInContextIsDrawnAsItIsAndEncodedOnlyWhenABitmap) {
    vantel::testing::RecordingContext recorder;
    CoreGraphicsRenderer recorded(PageSketch(Size(40, 20, 0), Line(0, 0, 4, 0)), &recorder);
    EXPECT_EQ(recorder.operations,
              (std::vector<std::string>{"moveTo 0.0 0.0", "lineTo 4.0 0.0", "strokePath"}));
    EXPECT_EQ(thrownBy<RenderError>([&] { return recorded.render(); }), RenderError::failedToMakeImage());

    BitmapContext bitmap(30, 30);  // the picture has the bitmap's size, not the page's
    CoreGraphicsRenderer renderer(PageSketch(Size(40, 20, 0), redSquare()), &bitmap.context());
    auto image = readPNG(renderer.render());
    EXPECT_EQ(image.width, 30);
    EXPECT_EQ(image.at(9, 9), (std::array<int, 4>{255, 0, 0, 255}));
    EXPECT_EQ(image.at(20, 20)[3], 0);
}

TEST(CoreGraphicsRendererTest, DebugFlagChoosesTheDebugDrawingForLaterShapes) {
    vantel::testing::RecordingContext recorder;
    CoreGraphicsRenderer renderer(10, 10, &recorder, false);
    renderer.addShape(PathProbe{});
    renderer.debug = true;
    renderer.addShapes({PathProbe{}, PathProbe{}});
    EXPECT_EQ(recorder.operations,
              (std::vector<std::string>{"lineWidth 1.0", "lineWidth 2.0", "lineWidth 2.0"}));
}

TEST(CoreGraphicsRendererTest, NamedFilesGetTheExtensionAndOptionalSubFolder) {
    URL folder = URL::fileURL("/out", true);
    auto path = [&](NSBitmapImageFileType type, const char* name, bool subDir) {
        return CoreGraphicsRenderer::imageURL(type, name, folder, subDir).path().string();
    };
    EXPECT_EQ(path(NSBitmapImageFileType::png, "a", true), "/out/Png/a.png");
    EXPECT_EQ(path(NSBitmapImageFileType::png, "a", false), "/out/a.png");
    EXPECT_EQ(path(NSBitmapImageFileType::png, "chart.png", false), "/out/chart.png");
    EXPECT_EQ(path(NSBitmapImageFileType::png, "chart.PNG", false), "/out/chart.PNG.png");
    EXPECT_EQ(path(NSBitmapImageFileType::jpeg, "b.jpeg", false), "/out/b.jpeg");
    EXPECT_EQ(path(NSBitmapImageFileType::jpeg, "b.jpg", false), "/out/b.jpg.jpeg");
    EXPECT_EQ(path(NSBitmapImageFileType::jpeg2000, "c", true), "/out/Jpeg2000/c.jpeg2000");
    EXPECT_EQ(path(NSBitmapImageFileType::png, "sub/d", false), "/out/sub/d.png");
}

TEST(CoreGraphicsRendererTest, WritingCreatesTheFolderAndAFileThatDecodes) {
    vantel::testing::TemporaryFolder temporary;
    CoreGraphicsRenderer renderer(PageSketch(Size(12, 8, 0), redSquare()));
    URL folder = URL::fileURL(temporary.path() / "nested", true);
    renderer.writePNG("square", folder, true);
    auto image = readPNG(readData(temporary.path() / "nested" / "Png" / "square.png"));
    EXPECT_EQ(image.width, 12);
    EXPECT_EQ(image.at(2, 2), (std::array<int, 4>{255, 0, 0, 255}));
}
