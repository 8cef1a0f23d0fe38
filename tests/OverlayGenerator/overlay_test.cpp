#include <OverlayGenerator/FauxDrawable.hpp>
#include <OverlayGenerator/OverlayGen.hpp>

#include <CoreGraphicsRendering/BitmapContext.hpp>
#include <CoreGraphicsRendering/ImageEncoding.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>
#include <Graphics2/Rectangle.hpp>
#include <Graphics2/StyledShape.hpp>
#include <RecordingContext.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <thread>

using namespace vantel;
using vantel::testing::rasterOperations;

namespace {

AspectRatio guide(double width, double height) {
    return AspectRatio(width, height, Color::black(), Color::clear(), 2, GridType::none(), GridType::none(),
                       std::nullopt);
}

}  // namespace

TEST(OverlayBodyTest, BackgroundThenFillerThenOneGroupPerGuide) {
    OverlayGen document(400, 300, 10, Color::navy(), {guide(16, 9), guide(1, 1)});
    fittingSize.reset();
    Drawable body = document.body();
    EXPECT_EQ(fittingSize, document.size());
    EXPECT_EQ(centeringSize, document.size());

    const GroupDrawable& root = *body.as<GroupDrawable>();
    ASSERT_EQ(root.shapes.size(), 3u);
    const StyledShape& background = *root.shapes[0].as<StyledShape>();
    EXPECT_EQ(background.fillColor, Color::navy());
    EXPECT_EQ(background.strokeWidth, 0);
    EXPECT_FALSE(background.strokeColor.has_value());
    EXPECT_EQ(background.shape.as<Rectangle>()->makeCGRect(), (CGRect{0, 0, 400, 300}));
    EXPECT_NE(root.shapes[1].as<FauxDrawable>(), nullptr);

    const GroupDrawable& guides = *root.shapes[2].as<GroupDrawable>();
    ASSERT_EQ(guides.shapes.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        const GroupDrawable& wrapper = *guides.shapes[i].as<GroupDrawable>();
        ASSERT_EQ(wrapper.shapes.size(), 1u);
        EXPECT_EQ(rasterOperations(wrapper.shapes[0]),
                  rasterOperations(document.ratios()[i].drawing(document.size(), document.size())));
    }
    EXPECT_TRUE(OverlayGen(9, 9, 0, Color::clear(), {}).body().as<GroupDrawable>()->shapes[2]
                    .as<GroupDrawable>()->shapes.empty());
}

TEST(OverlayConcurrencyTest, BodiesOfTwoDocumentsOnTwoThreadsMatchTheirSingleThreadedDrawing) {
    AspectRatio nested = guide(16, 9);
    nested.children = std::vector<AspectRatio>{guide(4, 3), guide(1, 1)};
    nested.rowType = GridType::divisor(3);
    const OverlayGen first(320, 180, 8, Color::navy(), {nested, guide(9, 16)});
    const OverlayGen second(150, 210, 5, Color::black(), {guide(1, 1), nested});
    const auto firstExpected = rasterOperations(first.body());
    const auto secondExpected = rasterOperations(second.body());
    const Data firstImage = first.render();
    const Data secondImage = second.render();
    ASSERT_NE(firstExpected, secondExpected);

    std::atomic<int> mismatches{0};
    auto work = [&](const OverlayGen& document, const std::vector<std::string>& expected, const Data& image) {
        for (int i = 0; i < 200; ++i) {
            if (rasterOperations(document.body()) != expected) ++mismatches;
            if (i % 10 == 0 && document.render() != image) ++mismatches;
            // The stateful layout must see this thread's document, never the other one.
            const AspectRatio& last = document.ratios()[1];
            if (rasterOperations(last.drawing()) != rasterOperations(last.drawing(document.size(), document.size()))) {
                ++mismatches;
            }
        }
    };
    std::thread a(work, std::cref(first), std::cref(firstExpected), std::cref(firstImage));
    std::thread b(work, std::cref(second), std::cref(secondExpected), std::cref(secondImage));
    a.join();
    b.join();
    EXPECT_EQ(mismatches.load(), 0);
}

TEST(OverlayRenderTest, ClearParentDecidesWhetherTheParentsFillShowsUnderAChild) {
    auto centreAlpha = [](bool clearParent) {
        AspectRatio parent = guide(1, 1);
        parent.fillColor = Color(1, 0, 0, 1);
        AspectRatio inner = guide(1, 2);  // clear fill
        inner.clearParent = clearParent;
        parent.children = std::vector<AspectRatio>{inner};
        OverlayGen document(100, 100, 0, Color(0, 0, 1, 1), {parent});
        BitmapContext bitmap(100, 100);
        document.body().draw(bitmap.context());
        return bitmap.image().row(50)[50] >> 24;
    };
    EXPECT_EQ(centreAlpha(false), 255u);
    EXPECT_EQ(centreAlpha(true), 0u);
}

TEST(OverlayRenderTest, RenderEncodesTheBodyAsPNGAndPassesRenderErrorsOn) {
    OverlayGen document(64, 48, 4, Color::navy(), {guide(16, 9)});
    BitmapContext bitmap(64, 48);
    document.body().draw(bitmap.context());
    EXPECT_EQ(document.render(), encodeImage(bitmap.image(), NSBitmapImageFileType::png));

    EXPECT_THROW(OverlayGen(0, 48, 0, Color::navy(), {}).render(), RenderError);
}

TEST(OverlayGenTest, PublishedValuesAnnounceChangesBeforeTheyTakeEffect) {
    OverlayGen document(400, 300, 10, Color::clear(), {});
    std::vector<std::string> seen;
    auto token = document.publishedSize().subscribe([&](const Size& next) {
        seen.push_back(numberText(document.size().width) + "->" + numberText(next.width));
    });
    document.setSize(Size(800, 600, 10));
    document.publishedSize().unsubscribe(token);
    document.setSize(Size(10, 10, 0));
    EXPECT_EQ(seen, std::vector<std::string>{"400.0->800.0"});

    OverlayGen same(Size(10, 10, 0), Color::clear(), {});
    EXPECT_EQ(document, same);
    same.setBackgroundColor(Color::black());
    EXPECT_NE(document, same);
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
    EXPECT_EQ(guide(16, 9).icon(), "rectangle");
    EXPECT_EQ(guide(9, 16).iconFill(), "rectangle.portrait.fill");
    EXPECT_EQ(guide(0, 0).iconFill(), "square.fill");
}

TEST(AspectRatioPresetTest, PresetsTakeTheirColoursFromThePaletteInOrder) {
    const auto& palette = AspectRatio::presetPalette();
    AspectRatio square = AspectRatio::defaultGuide();
    EXPECT_EQ(square.ratio(), 1);
    EXPECT_EQ(square.weight, 10);
    EXPECT_NE(std::find(palette.begin(), palette.end(), square.color), palette.end());

    std::size_t drawn = 0;
    std::vector<AspectRatio> guides = AspectRatio::test([&] { return palette.at(drawn++); });
    ASSERT_EQ(guides.size(), 2u);
    const AspectRatio& child = guides[0].children.value().at(0);
    EXPECT_EQ(guides[0].color, palette[0]);
    EXPECT_EQ(child.color, palette[1]);
    EXPECT_EQ(guides[1].color, palette[2]);
    EXPECT_EQ(guides[0].fillColor, Color::grey(0, 0.75));
    EXPECT_EQ(child.fillColor, Color::fromHexString("00007E", 0.25));
    EXPECT_EQ(child.description(), "Ratio 4.0 \u2236 3.0");
    EXPECT_EQ(guides[1].rowType, GridType::divisor(3));
}
