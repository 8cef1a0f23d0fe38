#include <OverlayGenerator/AspectRatio.hpp>
#include <OverlayGenerator/FauxDrawable.hpp>
#include <OverlayGenerator/Grid.hpp>

#include <Graphics2/Line.hpp>
#include <Graphics2/StyledShape.hpp>
#include <RecordingContext.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

using namespace vantel;
using vantel::testing::RecordingContext;

namespace {

const Size canvas(400, 300, 10);

AspectRatio guide(double width, double height, GridType rows = GridType::none(),
                  GridType columns = GridType::none()) {
    return AspectRatio(width, height, Color::navy(), Color::grey(0.5, 1), 2, rows, columns, std::nullopt);
}

// The styled grid at the head of a guide's drawing.
const StyledShape& styledGrid(const GroupDrawable& drawing) {
    const StyledShape* styled = drawing.shapes.at(0).as<StyledShape>();
    if (styled == nullptr || styled->shape.as<Grid>() == nullptr) throw std::logic_error("no styled grid");
    return *styled;
}

const Grid& gridOf(const GroupDrawable& drawing) { return *styledGrid(drawing).shape.as<Grid>(); }

const GroupDrawable& childDrawing(const GroupDrawable& drawing, std::size_t index) {
    const auto& wrapper = *drawing.shapes.at(2).as<GroupDrawable>()->shapes.at(index).as<GroupDrawable>();
    EXPECT_EQ(wrapper.shapes.size(), 1u);
    return *wrapper.shapes.at(0).as<GroupDrawable>();
}

std::ptrdiff_t indexOf(const std::vector<std::string>& operations, const std::string& operation) {
    auto found = std::find(operations.begin(), operations.end(), operation);
    EXPECT_NE(found, operations.end()) << operation;
    return found - operations.begin();
}

// Hands-over seen by a generic output, one line per drawable.
struct ShapeLog : DrawingContext {
    std::vector<std::string> shapes;
    void addShape(const Drawable& shape) override {
        std::string line = shape.typeName();
        if (const Line* l = shape.as<Line>()) {
            for (double v : {l->start.x, l->start.y, l->end.x, l->end.y}) line += " " + numberText(v);
        }
        shapes.push_back(line);
    }
};

}  // namespace

TEST(AspectRatioLayoutTest, FittingIsLimitedByTheTighterSideInsideTheMargin) {
    EXPECT_EQ(guide(1, 1).fitting(canvas), Size(280, 280, 0));
    EXPECT_EQ(guide(16, 9).fitting(canvas), Size(380, 213.75, 0));
    EXPECT_EQ(guide(9, 16).fitting(canvas), Size(157.5, 280, 0));

    Size undefined = guide(0, 0).fitting(canvas);  // NaN ratio falls to the width branch
    EXPECT_EQ(undefined.width, 380);
    EXPECT_TRUE(std::isnan(undefined.height));
}

TEST(AspectRatioLayoutTest, RotateSwapsTheSidesOnly) {
    AspectRatio ratio = guide(16, 9);
    ratio.children = std::vector<AspectRatio>{guide(4, 3)};
    ratio.rotate();
    EXPECT_EQ(ratio.width, 9);
    EXPECT_EQ(ratio.height, 16);
    EXPECT_EQ(ratio.children->front().width, 4);
    EXPECT_DOUBLE_EQ(ratio.ratio(), 9.0 / 16.0);
}

TEST(AspectRatioLayoutTest, GuideIsShrunkByItsWeightAndCentredOnTheCanvas) {
    GroupDrawable drawing = guide(1, 1, GridType::divisor(2)).drawing(canvas, canvas);
    ASSERT_EQ(drawing.shapes.size(), 4u);
    EXPECT_NE(drawing.shapes[1].as<FauxDrawable>(), nullptr);
    EXPECT_TRUE(drawing.shapes[2].as<GroupDrawable>()->shapes.empty());
    EXPECT_NE(drawing.shapes[3].as<FauxDrawable>(), nullptr);

    const StyledShape& styled = styledGrid(drawing);
    EXPECT_EQ(styled.strokeColor, Color::navy());
    EXPECT_EQ(styled.fillColor, Color::grey(0.5, 1));
    EXPECT_EQ(styled.strokeWidth, 2);

    const Grid& grid = gridOf(drawing);
    EXPECT_EQ(grid.baseRect.origin, Vector::point(200, 150));
    EXPECT_EQ(grid.baseRect.width, 278);
    EXPECT_EQ(grid.baseRect.height, 278);
    EXPECT_EQ(grid.baseRect.rotation.degrees, 0);
    EXPECT_EQ(grid.rowType, GridType::divisor(2));
    EXPECT_TRUE(grid.clearParent);
}

TEST(AspectRatioLayoutTest, ChildrenFitTheParentsBoxAndShareTheCanvasCentre) {
    AspectRatio parent = guide(16, 9);
    parent.children = std::vector<AspectRatio>{guide(16, 9), guide(1, 1)};
    GroupDrawable drawing = parent.drawing(canvas, Size(1000, 800, 0));

    const Grid& outer = gridOf(drawing);
    const Grid& sameRatio = gridOf(childDrawing(drawing, 0));
    const Grid& square = gridOf(childDrawing(drawing, 1));
    EXPECT_EQ(outer.baseRect.origin, Vector::point(500, 400));
    EXPECT_EQ(sameRatio.baseRect.origin, outer.baseRect.origin);
    EXPECT_EQ(sameRatio.baseRect.width, outer.baseRect.width);  // on the parent's outline
    EXPECT_EQ(sameRatio.baseRect.height, outer.baseRect.height);
    EXPECT_EQ(square.baseRect.width, 213.75 - 2);  // margins apply only at the top
    EXPECT_EQ(square.baseRect.origin, Vector::point(500, 400));
}

TEST(AspectRatioLayoutTest, StatefulDrawingReadsThisThreadsSizesAndLeavesThemAlone) {
    AspectRatio parent = guide(1, 1);
    parent.children = std::vector<AspectRatio>{guide(4, 3)};
    fittingSize = canvas;
    centeringSize = Size(600, 600, 0);
    GroupDrawable drawing = parent.drawing();
    EXPECT_EQ(gridOf(drawing).baseRect.origin, Vector::point(300, 300));
    EXPECT_EQ(gridOf(drawing).baseRect.width, 278);
    EXPECT_EQ(gridOf(childDrawing(drawing, 0)).baseRect.width, 278);
    EXPECT_EQ(fittingSize, canvas);
    EXPECT_EQ(centeringSize, Size(600, 600, 0));
}

TEST(AspectRatioLayoutDeathTest, DrawingWithUnsetLayoutSizesStops) {
    fittingSize.reset();
    centeringSize.reset();
    EXPECT_DEATH(guide(1, 1).drawing(), "fittingSize");
    fittingSize = canvas;
    EXPECT_DEATH(guide(1, 1).drawing(), "centeringSize");
}

TEST(GridOffsetsTest, PixelsStepUntilTheFarEdge) {
    using Offsets = std::vector<double>;
    EXPECT_EQ(gridOffsets(GridType::pixels(100), 250), (Offsets{100, 200}));
    EXPECT_EQ(gridOffsets(GridType::pixels(100), 300), (Offsets{100, 200}));
    EXPECT_EQ(gridOffsets(GridType::pixels(100), 100), Offsets{});
    EXPECT_EQ(gridOffsets(GridType::pixels(0), 100), Offsets{});
    EXPECT_EQ(gridOffsets(GridType::pixels(-5), 100), Offsets{});
    EXPECT_EQ(gridOffsets(GridType::none(), 100), Offsets{});
}

TEST(GridOffsetsTest, DivisorSplitsTheSideWithoutItsFarEdge) {
    using Offsets = std::vector<double>;
    EXPECT_EQ(gridOffsets(GridType::divisor(3), 90), (Offsets{30, 60}));
    EXPECT_EQ(gridOffsets(GridType::divisor(4), 100), (Offsets{25, 50, 75}));
    EXPECT_EQ(gridOffsets(GridType::divisor(1), 90), Offsets{});
    EXPECT_EQ(gridOffsets(GridType::divisor(0), 90), Offsets{});
    EXPECT_EQ(gridOffsets(GridType::divisor(-2), 100), Offsets{});
    EXPECT_EQ(gridOffsets(GridType::divisor(2), -100), Offsets{-50});  // a negative step walks down
    EXPECT_EQ(gridOffsets(GridType::divisor(2), std::nan("")), Offsets{});
    EXPECT_EQ(gridOffsets(GridType::divisor(3), 10).size(), 2u);  // 3.33.. steps stop short of 10
}

TEST(GridOffsetsDeathTest, DivisorOnAZeroSideStops) {
    EXPECT_DEATH(gridOffsets(GridType::divisor(3), 0), "zero");
    EXPECT_DEATH(gridOffsets(GridType::divisor(3), -0.0), "zero");
}

TEST(GridDrawingTest, RasterClearsThenDrawsTheRectThenRowsThenColumns) {
    // 278 x 278 at (200, 150): corner (61, 11).
    Drawable drawing = guide(1, 1, GridType::divisor(2), GridType::pixels(100)).drawing(canvas, canvas);
    RecordingContext context;
    drawing.draw(context);
    const auto& ops = context.operations;

    auto clear = indexOf(ops, "clearRect 61.0 11.0 278.0 278.0");
    auto fill = indexOf(ops, "fillRect 61.0 11.0 278.0 278.0");
    auto row = indexOf(ops, "moveTo 61.0 150.0");
    auto firstColumn = indexOf(ops, "moveTo 161.0 11.0");
    auto secondColumn = indexOf(ops, "moveTo 261.0 11.0");
    EXPECT_LT(clear, fill);
    EXPECT_LT(fill, row);
    EXPECT_LT(row, firstColumn);
    EXPECT_LT(firstColumn, secondColumn);
    EXPECT_EQ(ops[row + 1], "lineTo 339.0 150.0");
    EXPECT_EQ(ops[firstColumn + 1], "lineTo 161.0 289.0");
    EXPECT_LT(indexOf(ops, "lineWidth 2.0"), clear);  // drawn with the guide's style
}

TEST(GridDrawingTest, RasterSkipsClearingWhenNotAskedAndDrawsChildrenAfterTheParent) {
    AspectRatio parent = guide(1, 1);
    AspectRatio child = guide(2, 1);
    child.clearParent = false;
    parent.children = std::vector<AspectRatio>{child};
    RecordingContext context;
    Drawable(parent.drawing(canvas, canvas)).draw(context);
    const auto& ops = context.operations;

    // The child: 280 x 140 box, rect 278 x 138 at corner (61, 81).
    EXPECT_EQ(std::count_if(ops.begin(), ops.end(), [](const std::string& op) { return op.starts_with("clearRect"); }), 1);
    EXPECT_LT(indexOf(ops, "fillRect 61.0 11.0 278.0 278.0"), indexOf(ops, "fillRect 61.0 81.0 278.0 138.0"));
}

TEST(GridDrawingTest, GenericDrawingUsesOffsetsAsAbsoluteCoordinatesAndTheRectLast) {
    Grid grid{Rectangle(Vector::point(200, 150), 200, 100, Angle::fromDegrees(0)), GridType::divisor(2),
              GridType::pixels(80), true};
    ShapeLog log;
    grid.draw(static_cast<DrawingContext&>(log));
    EXPECT_EQ(log.shapes, (std::vector<std::string>{
                              "Line 100.0 50.0 300.0 50.0",
                              "Line 80.0 100.0 80.0 200.0",
                              "Line 160.0 100.0 160.0 200.0",
                              "Rectangle",
                          }));
}

TEST(GridDrawingTest, FauxDrawableIsHandedOverGenericallyButNeverRastered) {
    Drawable faux = FauxDrawable{};
    EXPECT_FALSE(faux.isCGDrawable());
    ShapeLog log;
    faux.draw(static_cast<DrawingContext&>(log));
    EXPECT_EQ(log.shapes, std::vector<std::string>{"FauxDrawable"});
    EXPECT_TRUE(Drawable(guide(1, 1).drawing(canvas, canvas)).isCGDrawable());
}
