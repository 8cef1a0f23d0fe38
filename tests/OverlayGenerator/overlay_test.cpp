#include <OverlayGenerator/FauxDrawable.hpp>
#include <OverlayGenerator/Grid.hpp>
#include <OverlayGenerator/OverlayGen.hpp>
#include <OverlayGenerator/UTType.hpp>

#include <Graphics2/StyledShape.hpp>
#include <RecordingContext.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <thread>

using namespace vantel;
using vantel::testing::RecordingContext;

namespace {

AspectRatio guide(double width, double height) {
    return AspectRatio(width, height, Color::black(), Color::clear(), 2, GridType::none(), GridType::none(),
                       std::nullopt);
}

std::vector<std::string> rasterOperations(const Drawable& drawable) {
    RecordingContext context;
    drawable.draw(context);
    return context.operations;
}

// Hands out the palette in order, so tests can see which guide drew which colour.
AspectRatio::ColorSource paletteInOrder() {
    return [next = std::size_t{0}]() mutable { return AspectRatio::presetPalette().at(next++); };
}

}  // namespace

TEST(OverlayBodyTest, BackgroundThenFillerThenOneGroupPerGuide) {
    OverlayGen document(400, 300, 10, Color::navy(), {guide(16, 9), guide(1, 1)});
    Drawable body = document.body();
    const GroupDrawable* root = body.as<GroupDrawable>();
    ASSERT_NE(root, nullptr);
    ASSERT_EQ(root->shapes.size(), 3u);

    const StyledShape* background = root->shapes[0].as<StyledShape>();
    ASSERT_NE(background, nullptr);
    EXPECT_EQ(background->fillColor, Color::navy());
    EXPECT_EQ(background->strokeWidth, 0);
    EXPECT_FALSE(background->strokeColor.has_value());
    const Rectangle* canvas = background->shape.as<Rectangle>();
    ASSERT_NE(canvas, nullptr);
    EXPECT_EQ(canvas->makeCGRect(), (CGRect{0, 0, 400, 300}));

    EXPECT_NE(root->shapes[1].as<FauxDrawable>(), nullptr);
    const GroupDrawable* guides = root->shapes[2].as<GroupDrawable>();
    ASSERT_EQ(guides->shapes.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        const GroupDrawable* wrapper = guides->shapes[i].as<GroupDrawable>();
        ASSERT_EQ(wrapper->shapes.size(), 1u);
        Size canvasSize = document.size();
        EXPECT_EQ(rasterOperations(wrapper->shapes[0]),
                  rasterOperations(document.ratios()[i].drawing(canvasSize, canvasSize)));
    }
}

TEST(OverlayBodyTest, BodyLeavesTheLayoutSizesHoldingTheDocumentSize) {
    fittingSize.reset();
    centeringSize.reset();
    OverlayGen empty(640, 480, 20, Color::clear(), {});
    Drawable body = empty.body();
    EXPECT_TRUE(body.as<GroupDrawable>()->shapes[2].as<GroupDrawable>()->shapes.empty());
    EXPECT_EQ(fittingSize, Size(640, 480, 20));
    EXPECT_EQ(centeringSize, Size(640, 480, 20));
}

TEST(OverlayConcurrencyTest, BodiesOfTwoDocumentsOnTwoThreadsMatchTheirSingleThreadedDrawing) {
    AspectRatio nested = guide(16, 9);
    nested.children = std::vector<AspectRatio>{guide(4, 3), guide(1, 1)};
    nested.rowType = GridType::divisor(3);
    const OverlayGen first(1920, 1080, 40, Color::navy(), {nested, guide(9, 16)});
    const OverlayGen second(500, 700, 5, Color::black(), {guide(1, 1), nested});
    const auto firstExpected = rasterOperations(first.body());
    const auto secondExpected = rasterOperations(second.body());
    ASSERT_NE(firstExpected, secondExpected);

    std::atomic<int> mismatches{0};
    auto work = [&](const OverlayGen& document, const std::vector<std::string>& expected) {
        for (int i = 0; i < 200; ++i) {
            if (rasterOperations(document.body()) != expected) ++mismatches;
            // The stateful layout must see this thread's document, never the other one.
            if (rasterOperations(document.ratios()[1].drawing()) !=
                rasterOperations(document.ratios()[1].drawing(document.size(), document.size()))) {
                ++mismatches;
            }
        }
    };
    std::thread a(work, std::cref(first), std::cref(firstExpected));
    std::thread b(work, std::cref(second), std::cref(secondExpected));
    a.join();
    b.join();
    EXPECT_EQ(mismatches.load(), 0);
}

TEST(OverlayGenTest, PublishedValuesAnnounceChangesBeforeTheyTakeEffect) {
    OverlayGen document(400, 300, 10, Color::clear(), {});
    std::vector<std::string> seen;
    auto token = document.publishedSize().subscribe([&](const Size& next) {
        seen.push_back(numberText(document.size().width) + "->" + numberText(next.width));
    });
    document.publishedRatios().subscribe([&](const auto& next) { seen.push_back(std::to_string(next.size())); });
    document.setSize(Size(800, 600, 10));
    document.setRatios({guide(1, 1)});
    document.publishedSize().unsubscribe(token);
    document.setSize(Size(10, 10, 0));
    EXPECT_EQ(seen, (std::vector<std::string>{"400.0->800.0", "1"}));
    EXPECT_EQ(document.size(), Size(10, 10, 0));
}

TEST(OverlayGenTest, EqualityComparesEveryPublishedValue) {
    AspectRatio square = guide(1, 1);
    OverlayGen a(400, 300, 10, Color::navy(), {square});
    OverlayGen b(Size(400, 300, 10), Color::navy(), {square});
    EXPECT_EQ(a, b);
    b.setBackgroundColor(Color::black());
    EXPECT_NE(a, b);
    b.setBackgroundColor(Color::navy());
    b.setRatios({guide(1, 1)});  // same values, fresh id
    EXPECT_NE(a, b);
}

TEST(OverlayGenTest, DescriptionListsTopLevelGuidesTruncatedTowardZero) {
    AspectRatio wide = guide(16, 9);
    wide.children = std::vector<AspectRatio>{guide(4, 3)};
    EXPECT_EQ(OverlayGen(400, 300, 10, Color::clear(), {wide, guide(1, 1)}).description(), "overlay_16x9_1x1");
    EXPECT_EQ(OverlayGen(400, 300, 10, Color::clear(), {}).description(), "overlay_");
    EXPECT_EQ(OverlayGen(400, 300, 10, Color::clear(), {guide(16.9, -2.7)}).description(), "overlay_16x-2");
}

TEST(OverlayGenDeathTest, DescriptionOfAnUnrepresentableSideStops) {
    for (double side : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e19}) {
        OverlayGen document(400, 300, 10, Color::clear(), {guide(side, 1)});
        EXPECT_DEATH(document.description(), "integer");
    }
}

TEST(AspectRatioTextTest, DescriptionIconsAndFormat) {
    EXPECT_EQ(guide(16, 9).description(), "Ratio 16.0 \u2236 9.0");
    EXPECT_EQ(guide(16, 9).formatted(), "16\u22369");
    EXPECT_EQ(AspectRatio::FormatStyle::aspectRatio().format(guide(4, 3)), "4\u22363");

    EXPECT_EQ(guide(16, 9).icon(), "rectangle");
    EXPECT_EQ(guide(9, 16).iconFill(), "rectangle.portrait.fill");
    EXPECT_EQ(guide(2, 2).icon(), "square");
    EXPECT_EQ(guide(0, 0).iconFill(), "square.fill");
}

TEST(AspectRatioPresetTest, DefaultGuideIsASquareWithAPaletteColour) {
    const auto& palette = AspectRatio::presetPalette();
    ASSERT_EQ(palette.size(), 11u);
    EXPECT_EQ(palette.front(), Color::rgb255(141, 211, 199, 1.0));
    EXPECT_EQ(palette.back(), Color::rgb255(255, 237, 111, 1.0));

    AspectRatio square = AspectRatio::defaultGuide();
    EXPECT_EQ(square.width, 1);
    EXPECT_EQ(square.height, 1);
    EXPECT_EQ(square.weight, 10);
    EXPECT_EQ(square.fillColor, Color::clear());
    EXPECT_TRUE(square.clearParent);
    EXPECT_FALSE(square.children.has_value());
    EXPECT_NE(std::find(palette.begin(), palette.end(), square.color), palette.end());
    EXPECT_NE(AspectRatio::defaultGuide().id, square.id);
}

TEST(AspectRatioPresetTest, TestGuidesDrawColoursInOrderWideChildTall) {
    std::vector<AspectRatio> guides = AspectRatio::test(paletteInOrder());
    const auto& palette = AspectRatio::presetPalette();
    ASSERT_EQ(guides.size(), 2u);
    const AspectRatio& wide = guides[0];
    const AspectRatio& tall = guides[1];
    ASSERT_EQ(wide.children->size(), 1u);
    const AspectRatio& child = wide.children->front();

    EXPECT_EQ(wide.color, palette[0]);
    EXPECT_EQ(child.color, palette[1]);
    EXPECT_EQ(tall.color, palette[2]);
    EXPECT_EQ(wide.fillColor, Color::grey(0, 0.75));
    EXPECT_EQ(child.fillColor, Color::fromHexString("00007E", 0.25));
    EXPECT_EQ(tall.fillColor, Color::clear());
    EXPECT_EQ(tall.rowType, GridType::divisor(3));
    EXPECT_EQ(child.description(), "Ratio 4.0 \u2236 3.0");
    EXPECT_FALSE(tall.children.has_value());
    for (const AspectRatio* g : {&wide, &child, &tall}) {
        EXPECT_EQ(g->weight, 10);
        EXPECT_TRUE(g->clearParent);
    }
}

TEST(UTTypeTest, OverlayDocumentsHaveTheirOwnType) {
    EXPECT_EQ(UTType::aspectRatio().identifier, "vantel.aspect-ratio");
    EXPECT_EQ(UTType::aspectRatio().preferredMIMEType, "application/x-vantel-aspect-ratio");
    EXPECT_EQ(UTType::aspectRatio().preferredFilenameExtension, "aspectratio");
}
