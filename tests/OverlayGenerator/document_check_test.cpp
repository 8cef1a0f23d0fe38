#include <OverlayGenerator/DocumentCheck.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace vantel;

namespace {

constexpr double nan_ = std::numeric_limits<double>::quiet_NaN();
constexpr double inf_ = std::numeric_limits<double>::infinity();

AspectRatio guide(double width, double height, double weight = 2) {
    return AspectRatio(width, height, Color::black(), Color::clear(), weight, GridType::none(),
                       GridType::none(), std::nullopt);
}

std::vector<std::string> problemsOf(Size size, std::vector<AspectRatio> ratios,
                                    Color background = Color::clear()) {
    OverlayGen document(size, background, std::move(ratios));
    std::vector<std::string> lines;
    for (const auto& problem : checkDocument(document)) lines.push_back(problem.text());
    return lines;
}

}  // namespace

TEST(DocumentCheckTest, DrawableDocumentsHaveNoProblems) {
    EXPECT_TRUE(problemsOf(Size(1920, 1080, 40), AspectRatio::test()).empty());
    EXPECT_TRUE(problemsOf(Size(1, 1, 0), {}).empty());
}

TEST(DocumentCheckTest, CanvasValuesThatCannotBeDrawnAreNamed) {
    EXPECT_EQ(problemsOf(Size(nan_, 100, -1), {}),
              (std::vector<std::string>{"size.width: nan is not a finite number",
                                        "size.margin: margin -1.0 is negative"}));
    // A value found bad is reported once, not again by the checks it would feed.
    EXPECT_EQ(problemsOf(Size(100, inf_, 0), {}, Color(0, 0, 0, nan_)),
              (std::vector<std::string>{"size.height: inf is not a finite number",
                                        "backgroundColor.alpha: nan is not a finite number"}));
    EXPECT_EQ(problemsOf(Size(-5, 100, 0), {}), (std::vector<std::string>{"size.width: canvas width -5.0 is negative"}));
    EXPECT_EQ(problemsOf(Size(0.5, 100, 0), {}),
              (std::vector<std::string>{"size: canvas 0.5 x 100.0 is smaller than one pixel"}));
    EXPECT_EQ(problemsOf(Size(40000, 10, 0), {}),
              (std::vector<std::string>{"size: canvas 40000.0 x 10.0 is larger than the limit of 32767 px a side"}));
    // Its area is the output's affair: drawn smaller, it draws.
    EXPECT_TRUE(problemsOf(Size(30000, 30000, 0), {}).empty());
    EXPECT_EQ(problemsOf(Size(100, 50, 25), {}),
              (std::vector<std::string>{"size.margin: margin 25.0 leaves no room on a 100.0 x 50.0 canvas"}));
}

TEST(DocumentCheckTest, GuideValuesAreNamedByTheirPath) {
    AspectRatio parent = guide(16, 9);
    AspectRatio child = guide(0, inf_, -1);
    child.color = Color::black();
    child.color.alpha = nan_;
    parent.children = std::vector<AspectRatio>{guide(1, 1), child};
    EXPECT_EQ(problemsOf(Size(400, 300, 10), {guide(1, 1), parent}),
              (std::vector<std::string>{
                  "ratios[1].children[1].width: a guide needs a positive ratio side, not 0.0",
                  "ratios[1].children[1].height: inf is not a finite number",
                  "ratios[1].children[1].weight: weight -1.0 is negative",
                  "ratios[1].children[1].color.alpha: nan is not a finite number"}));
}

TEST(DocumentCheckTest, GridsAreCheckedOnTheSidesTheLayoutGivesThem) {
    // The child's fitted box is the parent's; a weight as wide as that box
    // leaves a side of 0 px, which a divisor would cut into zero-length steps.
    AspectRatio parent = guide(1, 1, 2);
    AspectRatio child = guide(1, 1, 280);
    child.columnType = GridType::divisor(3);
    child.rowType = GridType::divisor(0);  // an infinite step: no lines, no problem
    parent.children = std::vector<AspectRatio>{child};
    AspectRatio dense = guide(1, 1);
    dense.rowType = GridType::divisor(1000000000);
    EXPECT_EQ(problemsOf(Size(400, 300, 10), {parent, dense}),
              (std::vector<std::string>{
                  "ratios[0].children[0].columnType: divisor 3 on a side of 0.0 px would give a zero grid step",
                  "ratios[1].rowType: divisor 1000000000 on a side of 278.0 px would draw more than 100000 grid lines"}));
}

TEST(DocumentCheckTest, NestingDeeperThanTheLimitIsReportedOnce) {
    AspectRatio innermost = guide(1, 1, 0);
    for (int level = 0; level < DrawingLimits::maxGuideDepth; ++level) {
        AspectRatio outer = guide(1, 1, 0);
        outer.children = std::vector<AspectRatio>{innermost};
        innermost = outer;
    }
    auto problems = problemsOf(Size(100, 100, 0), {innermost});
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_NE(problems[0].find("nested deeper than 64 levels"), std::string::npos) << problems[0];
    EXPECT_EQ(problems[0].rfind("ratios[0]", 0), 0u);
}

TEST(DocumentCheckTest, GridLinesOfAllGuidesTogetherAreLimited) {
    // Five guides at the per-side limit on both sides draw the most a document
    // may; a binary property list can make far more of them by sharing one.
    AspectRatio dense = guide(1, 1, 0);
    dense.rowType = GridType::divisor(100000);
    dense.columnType = GridType::divisor(100000);
    AspectRatio parent = guide(1, 1, 0);
    parent.children = std::vector<AspectRatio>(5, dense);
    EXPECT_TRUE(problemsOf(Size(1000, 1000, 0), {parent}).empty());

    parent.rowType = GridType::pixels(1);  // 5 x 2 x 99999 divisor lines and 999 more
    EXPECT_EQ(problemsOf(Size(1000, 1000, 0), {parent}),
              (std::vector<std::string>{
                  "ratios: the guides would draw 1000989 grid lines in all, more than the limit of 1000000"}));
}

TEST(DocumentCheckTest, DrawingCostIsCountedAtTheSizeDrawn) {
    auto costsOf = [](const OverlayGen& document, double side) {
        std::vector<std::string> lines;
        for (const auto& problem : checkDrawingCost(document, {side, side})) lines.push_back(problem.text());
        return lines;
    };
    // Every guide is replayed over the whole picture.
    AspectRatio crowded = guide(1, 1, 0);
    crowded.children = std::vector<AspectRatio>(40000, guide(1, 1, 0));
    OverlayGen crowd(Size(16384, 16384, 0), Color::clear(), {crowded});
    EXPECT_EQ(costsOf(crowd, 16384),
              (std::vector<std::string>{"ratios: 40001 guides drawn at 16384 x 16384 px cost 10737686675456 guide "
                                        "pixels, more than the limit of 17179869184"}));
    EXPECT_TRUE(costsOf(crowd, 256).empty());

    // A grid line costs its drawn length, however many canvas units it spans.
    AspectRatio lined = guide(1, 1, 0);
    lined.rowType = GridType::pixels(1);
    lined.columnType = GridType::pixels(1);
    OverlayGen grids(Size(16384, 16384, 0), Color::clear(), std::vector<AspectRatio>(30, lined));
    EXPECT_EQ(costsOf(grids, 16384),
              (std::vector<std::string>{"ratios: the grid lines drawn at 16384 x 16384 px cover 16105144320 pixels "
                                        "of line, more than the limit of 536870912"}));
    EXPECT_TRUE(costsOf(grids, 256).empty());
    EXPECT_TRUE(costsOf(OverlayGen(Size(16384, 16384, 0), Color::clear(), AspectRatio::test()), 16384).empty());
}
