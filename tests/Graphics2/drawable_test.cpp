#include <Graphics2/Circle.hpp>
#include <Graphics2/Drawable.hpp>
#include <Graphics2/EmptyDrawable.hpp>
#include <Graphics2/GroupDrawable.hpp>
#include <Graphics2/Line.hpp>
#include <Graphics2/Size.hpp>
#include <Graphics2/SketchBuilder.hpp>
#include <Graphics2/SketchDrawing.hpp>
#include <Graphics2/StyledShape.hpp>

#include "RecordingContext.hpp"

#include <gtest/gtest.h>

#include <type_traits>

using vantel::CGContext;
using vantel::Color;
using vantel::Drawable;
using vantel::EmptyDrawable;
using vantel::GroupDrawable;
using vantel::SketchBuilder;
using vantel::StyledShape;
using vantel::testing::PageSketch;
using vantel::testing::RecordingContext;
using vantel::testing::rasterOperations;
using Operations = std::vector<std::string>;

namespace {

// A raster drawable that leaves one recognisable operation.
struct Stroke {
    double x = 0;
    void draw(CGContext& context) const { context.moveTo(x, 0); }
};

// A drawable with no raster drawing at all (like a circle).
struct Dot {
    double x = 0;
};

struct Debuggable {
    void draw(CGContext& context) const { context.moveTo(1, 1); }
    void debugDraw(CGContext& context) const { context.moveTo(-1, -1); }
};

// A generic output that keeps what it is handed.
struct Collector : vantel::DrawingContext {
    std::vector<Drawable> shapes;
    void addShape(const Drawable& shape) override { shapes.push_back(shape); }
};

}  // namespace

TEST(DrawableTest, ModifiersUpdateOneStyledShapeInsteadOfNesting) {
    Drawable plain = Dot{1};
    Drawable styled = plain.strokeColor(Color::navy()).fillColor(Color::gold()).strokeWidth(2);
    const StyledShape* shape = styled.as<StyledShape>();
    ASSERT_NE(shape, nullptr);
    EXPECT_EQ(shape->strokeColor, Color::navy());
    EXPECT_EQ(shape->fillColor, Color::gold());
    EXPECT_EQ(shape->strokeWidth, 2);
    ASSERT_NE(shape->shape.as<Dot>(), nullptr);
    EXPECT_EQ(shape->shape.as<Dot>()->x, 1);

    Drawable restyled = styled.strokeColor(Color::redColor()).strokeWidth(std::nullopt);
    const StyledShape* changed = restyled.as<StyledShape>();
    ASSERT_NE(changed, nullptr);
    EXPECT_EQ(changed->strokeColor, Color::redColor());
    EXPECT_EQ(changed->fillColor, Color::gold());
    EXPECT_EQ(changed->strokeWidth, std::nullopt);
    EXPECT_NE(changed->shape.as<Dot>(), nullptr);
    EXPECT_EQ(styled.as<StyledShape>()->strokeWidth, 2);  // the receiver is unchanged
    EXPECT_EQ(plain.as<StyledShape>(), nullptr);

    Drawable aroundEmpty = Drawable(EmptyDrawable{}).strokeColor(Color::black());
    ASSERT_NE(aroundEmpty.as<StyledShape>(), nullptr);
    EXPECT_EQ(aroundEmpty.as<StyledShape>()->shape.typeName(), "EmptyDrawable");
    EXPECT_EQ(aroundEmpty.as<StyledShape>()->fillColor, std::nullopt);
}

TEST(DrawableTest, TypeNamesAreUnqualified) {
    EXPECT_EQ(Drawable().typeName(), "EmptyDrawable");
    EXPECT_EQ(Drawable(Dot{}).strokeWidth(1).typeName(), "StyledShape");
    EXPECT_EQ(Drawable(GroupDrawable()).typeName(), "GroupDrawable");
    EXPECT_EQ(Drawable(Dot{}).typeName(), "Dot");
    EXPECT_EQ(Drawable(vantel::Line()).typeName(), "Line");
    EXPECT_EQ(Drawable(Dot{}).as<Stroke>(), nullptr);
}

TEST(DrawableTest, GroupsFlattenDepthFirstAndStyledShapesArriveWhole) {
    GroupDrawable inner({Dot{2}, Drawable(Dot{3}).fillColor(Color::white())});
    GroupDrawable outer({Dot{1}, inner, GroupDrawable(), Dot{4}});
    Collector collector;
    Drawable(outer).draw(collector);

    ASSERT_EQ(collector.shapes.size(), 4u);
    EXPECT_EQ(collector.shapes[0].as<Dot>()->x, 1);
    EXPECT_EQ(collector.shapes[1].as<Dot>()->x, 2);
    ASSERT_NE(collector.shapes[2].as<StyledShape>(), nullptr);
    EXPECT_EQ(collector.shapes[2].as<StyledShape>()->shape.as<Dot>()->x, 3);
    EXPECT_EQ(collector.shapes[3].as<Dot>()->x, 4);
}

TEST(DrawableTest, RasterAbilityIsReadFromTheHeldType) {
    EXPECT_TRUE(Drawable(Stroke{}).isCGDrawable());
    EXPECT_TRUE(Drawable(GroupDrawable()).isCGDrawable());
    EXPECT_TRUE(Drawable(Dot{}).strokeWidth(1).isCGDrawable());
    EXPECT_FALSE(Drawable(Dot{}).isCGDrawable());
    EXPECT_FALSE(Drawable().isCGDrawable());
    EXPECT_TRUE(rasterOperations(Dot{}).empty());

    RecordingContext context;
    Drawable(Debuggable{}).debugDraw(context);
    Drawable(Stroke{5}).debugDraw(context);  // no debug form: draws normally
    EXPECT_EQ(context.operations, (Operations{"moveTo -1.0 -1.0", "moveTo 5.0 0.0"}));
}

TEST(DrawableTest, GroupsDrawRasterMembersInOrderSkipCirclesAndNeverDrawDebugForms) {
    GroupDrawable group({Stroke{1}, vantel::Circle(5, 5, 2), Debuggable{}, GroupDrawable({Stroke{2}}), EmptyDrawable{},
                         vantel::Line(0, 0, 10, 20)});
    Operations expected = {"moveTo 1.0 0.0", "moveTo 1.0 1.0", "moveTo 2.0 0.0",
                           "moveTo 0.0 0.0", "lineTo 10.0 20.0", "strokePath"};
    EXPECT_EQ(rasterOperations(group), expected);

    RecordingContext context;
    Drawable(group).debugDraw(context);
    EXPECT_EQ(context.operations, expected);
}

TEST(DrawableTest, StyledShapeSetsItsStylesInsideASavedState) {
    Drawable full = Drawable(Stroke{3}).fillColor(Color(0, 0, 1, 1)).strokeWidth(2).strokeColor(Color(1, 0, 0, 0.5));
    EXPECT_EQ(rasterOperations(full),
              (Operations{"save", "strokeColor 1.0 0.0 0.0 0.5", "lineWidth 2.0", "fillColor 0.0 0.0 1.0 1.0",
                          "moveTo 3.0 0.0", "restore"}));

    Drawable fillOnly = Drawable(Stroke{3}).fillColor(Color::white());
    EXPECT_EQ(rasterOperations(fillOnly),
              (Operations{"save", "fillColor 1.0 1.0 1.0 1.0", "moveTo 3.0 0.0", "restore"}));

    EXPECT_EQ(rasterOperations(Drawable(Dot{}).strokeWidth(4)), (Operations{"save", "lineWidth 4.0", "restore"}));
}

TEST(SketchDrawingTest, DrawingASketchDrawsOnlyARasterBody) {
    RecordingContext context;
    vantel::drawSketch(context, PageSketch({10, 10, 7}, GroupDrawable({Stroke{1}, Dot{}})));
    EXPECT_EQ(context.operations, (Operations{"moveTo 1.0 0.0"}));

    RecordingContext untouched;
    vantel::drawSketch(untouched, PageSketch({10, 10, 7}, Dot{}));
    vantel::drawSketch(untouched, PageSketch(vantel::Size(10, 10, 7)));
    EXPECT_TRUE(untouched.operations.empty());
}

TEST(SketchDrawingTest, FittingTranslatesThenScalesByTheSmallerRatio) {
    RecordingContext wide;
    vantel::fitSketch(wide, PageSketch(vantel::Size(200, 100, 7)), 100, 100);
    EXPECT_EQ(wide.operations, (Operations{"translate 0.0 25.0", "scale 0.5 0.5"}));

    RecordingContext square;
    vantel::fitSketch(square, PageSketch({100, 100, 7}, Stroke{}), 300, 200);
    EXPECT_EQ(square.operations, (Operations{"translate 50.0 0.0", "scale 2.0 2.0"}));
}

TEST(SketchBuilderTest, BlocksLoopsAndOptionalsBecomeTheDocumentedDrawables) {
    static_assert(std::is_same_v<decltype(SketchBuilder::buildBlock()), EmptyDrawable>);
    static_assert(std::is_same_v<decltype(SketchBuilder::buildBlock(Stroke{})), Stroke>);
    static_assert(std::is_same_v<decltype(SketchBuilder::buildBlock([] { return Dot{}; })), Dot>);

    std::vector<Stroke> strokes = SketchBuilder::buildBlock(Stroke{1}, Stroke{2}, Stroke{3});
    EXPECT_EQ(strokes.size(), 3u);
    EXPECT_EQ(strokes[2].x, 3);

    GroupDrawable mixed = SketchBuilder::buildBlock(Stroke{1}, Dot{2}, Drawable(Dot{3}));
    ASSERT_EQ(mixed.shapes.size(), 3u);
    EXPECT_EQ(mixed.shapes[1].as<Dot>()->x, 2);

    EXPECT_TRUE(SketchBuilder::buildArray(std::vector<Drawable>{}).shapes.empty());
    EXPECT_TRUE(SketchBuilder::buildArray(std::optional<std::vector<Drawable>>()).shapes.empty());
    EXPECT_EQ(SketchBuilder::buildOptional(std::nullopt).typeName(), "EmptyDrawable");
    EXPECT_EQ(SketchBuilder::buildOptional(Drawable(Dot{})).typeName(), "Dot");

    GroupDrawable single([] { return SketchBuilder::buildBlock(Stroke{1}, Dot{}); });
    ASSERT_EQ(single.shapes.size(), 1u);
    EXPECT_NE(single.shapes[0].as<GroupDrawable>(), nullptr);
}
