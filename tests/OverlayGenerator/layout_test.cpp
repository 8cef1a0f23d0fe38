#include <OverlayGenerator/AspectRatio.hpp>
#include <OverlayGenerator/FauxDrawable.hpp>
#include <OverlayGenerator/Grid.hpp>

#include <Graphics2/Line.hpp>
#include <Graphics2/StyledShape.hpp>
#include <RecordingContext.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace vantel;

namespace {

const Size canvas(400, 300, 10);

AspectRatio guide(double width, double height, GridType rows = GridType::none(),
                  GridType columns = GridType::none()) {
    return AspectRatio(width, height, Color::navy(), Color::grey(0.5, 1), 2, rows, columns, std::nullopt);
}

const StyledShape& styledGrid(const GroupDrawable& drawing) { return *drawing.shapes.at(0).as<StyledShape>(); }
const Rectangle& rectOf(const GroupDrawable& drawing) { return styledGrid(drawing).shape.as<Grid>()->baseRect; }

const GroupDrawable& child(const GroupDrawable& drawing, std::size_t index) {
    const auto& wrapper = *drawing.shapes.at(2).as<GroupDrawable>()->shapes.at(index).as<GroupDrawable>();
    EXPECT_EQ(wrapper.shapes.size(), 1u);
    return *wrapper.shapes.at(0).as<GroupDrawable>();
}

std::ptrdiff_t indexOf(const std::vector<std::string>& operations, const std::string& operation) {
    auto found = std::find(operations.begin(), operations.end(), operation);
    EXPECT_NE(found, operations.end()) << operation;
    return found - operations.begin();
}

}  // namespace

TEST(AspectRatioLayoutTest, FittingIsLimitedByTheTighterSideInsideTheMargin) {
    EXPECT_EQ(guide(1, 1).fitting(canvas), Size(280, 280, 0));
    EXPECT_EQ(guide(16, 9).fitting(canvas), Size(380, 213.75, 0));
    // The fitted box, centred on the canvas: what info reports as the guide's place.
    EXPECT_EQ(guide(16, 9).box(canvas, Size(400, 200, 0)), (CGRect{10, -6.875, 380, 213.75}));
    Size undefined = guide(0, 0).fitting(canvas);  // a NaN ratio takes the width branch
    EXPECT_EQ(undefined.width, 380);
    EXPECT_TRUE(std::isnan(undefined.height));

    AspectRatio turned = guide(16, 9);
    turned.rotate();
    EXPECT_EQ(turned.fitting(canvas), Size(157.5, 280, 0));
}

TEST(AspectRatioLayoutTest, GuideIsAStyledGridShrunkByItsWeightAndCentred) {
    GroupDrawable drawing = guide(1, 1, GridType::divisor(2)).drawing(canvas, canvas);
    ASSERT_EQ(drawing.shapes.size(), 4u);
    EXPECT_NE(drawing.shapes[1].as<FauxDrawable>(), nullptr);
    EXPECT_TRUE(drawing.shapes[2].as<GroupDrawable>()->shapes.empty());
    EXPECT_NE(drawing.shapes[3].as<FauxDrawable>(), nullptr);

    const StyledShape& styled = styledGrid(drawing);
    EXPECT_EQ(styled.strokeColor, Color::navy());
    EXPECT_EQ(styled.fillColor, Color::grey(0.5, 1));
    EXPECT_EQ(styled.strokeWidth, 2);
    EXPECT_EQ(styled.shape.as<Grid>()->rowType, GridType::divisor(2));
    EXPECT_EQ(rectOf(drawing).makeCGRect(), (CGRect{61, 11, 278, 278}));  // 278 x 278 at (200, 150)
}

TEST(AspectRatioLayoutTest, ChildrenFitTheParentsBoxAndShareTheCanvasCentre) {
    AspectRatio parent = guide(16, 9);
    parent.children = std::vector<AspectRatio>{guide(16, 9), guide(1, 1)};
    GroupDrawable drawing = parent.drawing(canvas, Size(1000, 800, 0));

    EXPECT_EQ(rectOf(drawing).origin, Vector::point(500, 400));
    EXPECT_EQ(rectOf(child(drawing, 0)).makeCGRect(), rectOf(drawing).makeCGRect());  // on the outline
    EXPECT_EQ(rectOf(child(drawing, 1)).width, 213.75 - 2);  // the margin applies only at the top
    EXPECT_EQ(rectOf(child(drawing, 1)).origin, Vector::point(500, 400));
}

TEST(AspectRatioLayoutDeathTest, DrawingWithUnsetLayoutSizesStops) {
    fittingSize.reset();
    centeringSize.reset();
    EXPECT_DEATH(guide(1, 1).drawing(), "fittingSize");
    fittingSize = canvas;
    EXPECT_DEATH(guide(1, 1).drawing(), "centeringSize");
}

TEST(GridOffsetsTest, StepsStopShortOfTheFarEdge) {
    using Offsets = std::vector<double>;
    EXPECT_EQ(gridOffsets(GridType::pixels(100), 250), (Offsets{100, 200}));
    EXPECT_EQ(gridOffsets(GridType::pixels(100), 100), Offsets{});
    EXPECT_EQ(gridOffsets(GridType::pixels(0), 100), Offsets{});
    EXPECT_EQ(gridOffsets(GridType::divisor(3), 90), (Offsets{30, 60}));
    EXPECT_EQ(gridOffsets(GridType::divisor(4), 100), (Offsets{25, 50, 75}));
    EXPECT_EQ(gridOffsets(GridType::divisor(0), 90), Offsets{});
    EXPECT_EQ(gridOffsets(GridType::divisor(-2), 100), Offsets{});
    EXPECT_EQ(gridOffsets(GridType::divisor(2), -100), Offsets{-50});  // a negative step walks down
    EXPECT_EQ(gridOffsets(GridType::divisor(2), std::nan("")), Offsets{});
}

TEST(GridOffsetsTest, LineCountIsTheNumberOfOffsetsWithoutListingThem) {
    const GridType grids[] = {GridType::pixels(1),  GridType::pixels(7),  GridType::pixels(100),
                              GridType::divisor(3), GridType::divisor(10), GridType::divisor(-3),
                              GridType::divisor(0), GridType::divisor(99999)};
    for (const GridType& grid : grids) {
        for (double length : {0.3, 1.0, 90.0, 99.99, 100.0, 1000.0, -100.0, std::nan("")}) {
            EXPECT_EQ(gridLineCount(grid, length), static_cast<double>(gridOffsets(grid, length).size()))
                << static_cast<int>(grid.tag) << " " << grid.payload << " on " << length;
        }
    }
    // 3 x 0.1 rounds above 0.3, 10 x 0.1 to exactly 1: neither edge is a line.
    EXPECT_EQ(gridLineCount(GridType::divisor(3), 0.3), 2);
    EXPECT_EQ(gridLineCount(GridType::divisor(10), 1), 9);
    EXPECT_GT(gridLineCount(GridType::divisor(std::int64_t(1) << 62), 1000), 1e18);
    EXPECT_TRUE(gridStepIsZero(GridType::divisor(3), 0));
    EXPECT_FALSE(gridStepIsZero(GridType::divisor(0), 0));
}

TEST(GridOffsetsDeathTest, DivisorOnAZeroSideStops) {
    EXPECT_DEATH(gridOffsets(GridType::divisor(3), 0), "zero");
    EXPECT_DEATH(gridOffsets(GridType::divisor(3), -0.0), "zero");
}

TEST(GridDrawingTest, RasterClearsThenDrawsTheRectThenRowsThenColumnsThenChildren) {
    AspectRatio parent = guide(1, 1, GridType::divisor(2), GridType::pixels(100));
    AspectRatio inner = guide(2, 1);
    inner.clearParent = false;
    parent.children = std::vector<AspectRatio>{inner};
    vantel::testing::RecordingContext context;
    Drawable(parent.drawing(canvas, canvas)).draw(context);
    const auto& ops = context.operations;

    // The parent's rect has its corner at (61, 11); the child's 278 x 138 rect at (61, 81).
    auto clear = indexOf(ops, "clearRect 61.0 11.0 278.0 278.0");
    auto fill = indexOf(ops, "fillRect 61.0 11.0 278.0 278.0");
    auto row = indexOf(ops, "moveTo 61.0 150.0");
    auto column = indexOf(ops, "moveTo 161.0 11.0");
    EXPECT_LT(indexOf(ops, "lineWidth 2.0"), clear);
    EXPECT_LT(clear, fill);
    EXPECT_LT(fill, row);
    EXPECT_LT(row, column);
    EXPECT_LT(column, indexOf(ops, "moveTo 261.0 11.0"));
    EXPECT_LT(column, indexOf(ops, "fillRect 61.0 81.0 278.0 138.0"));
    EXPECT_EQ(ops[row + 1], "lineTo 339.0 150.0");
    EXPECT_EQ(ops[column + 1], "lineTo 161.0 289.0");
    EXPECT_EQ(std::count_if(ops.begin(), ops.end(), [](const auto& op) { return op.starts_with("clearRect"); }), 1);
}

TEST(GridDrawingTest, GenericDrawingUsesOffsetsAsAbsoluteCoordinatesAndTheRectLast) {
    struct ShapeLog : DrawingContext {
        std::vector<std::string> shapes;
        void addShape(const Drawable& shape) override {
            std::string line = shape.typeName();
            if (const Line* l = shape.as<Line>()) {
                for (double v : {l->start.x, l->start.y, l->end.x, l->end.y}) line += " " + numberText(v);
            }
            shapes.push_back(line);
        }
    } log;
    Grid{Rectangle(Vector::point(200, 150), 200, 100, Angle::fromDegrees(0)), GridType::divisor(2),
         GridType::pixels(80), true}
        .draw(log);
    Drawable(FauxDrawable{}).draw(log);
    EXPECT_EQ(log.shapes, (std::vector<std::string>{"Line 100.0 50.0 300.0 50.0", "Line 80.0 100.0 80.0 200.0",
                                                    "Line 160.0 100.0 160.0 200.0", "Rectangle", "FauxDrawable"}));
    EXPECT_FALSE(Drawable(FauxDrawable{}).isCGDrawable());
}
