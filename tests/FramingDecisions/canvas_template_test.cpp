#include <FramingDecisions/CanvasTemplateApplication.hpp>
#include <FramingDecisions/FDLReading.hpp>
#include <FramingDecisions/FDLWriting.hpp>

#include <Platform/FileIO.hpp>

#include "TestSupport.hpp"
#include "Thrown.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <string_view>
#include <utility>
#include <vector>

using namespace vantel;
using vantel::testing::testDataPath;

namespace {

FramingDecisionList sample(const std::string& name) {
    FDLReadResult read = readFramingDecisionList(readData(testDataPath("fdl/" + name), 1 << 20));
    EXPECT_TRUE(read.document && !read.hasErrors()) << name;
    return read.document.value_or(FramingDecisionList{});
}

// Every number of a canvas's geometry, named, in a fixed order; areas it
// does not have are left out, so that a missing one shows as well.
std::vector<std::pair<std::string, double>> geometry(const FDLCanvas& canvas) {
    std::vector<std::pair<std::string, double>> numbers;
    auto area = [&numbers](const std::string& name, const FDLDimensions& size, const FDLPoint& anchor) {
        numbers.insert(numbers.end(), {{name + ".width", size.width}, {name + ".height", size.height},
                                       {name + ".x", anchor.x}, {name + ".y", anchor.y}});
    };
    area("canvas", canvas.dimensions, {});
    numbers.emplace_back("squeeze", canvas.anamorphicSqueeze);
    if (canvas.effectiveDimensions) area("effective", *canvas.effectiveDimensions, *canvas.effectiveAnchorPoint);
    for (const FramingDecision& decision : canvas.framingDecisions) {
        if (decision.protection()) area("protection", decision.protection()->size, decision.protection()->anchor);
        area("framing", decision.dimensions, decision.anchorPoint);
    }
    return numbers;
}

// Where a published result departs from the ASC's own text, each number we
// make instead, as its distance from the published one.
struct Deviation {
    std::string_view set, number;
    double ours;  // minus published
};
constexpr Deviation deviations[] = {
    // Scen2-B snaps its framing in to whole pixels; framing scales fractionally, round is the canvas's (ASC 7.4.12).
    {"Scen2-", "framing.width", 0.690647}, {"Scen2-", "framing.height", 0.172662},
    {"Scen2-", "framing.x", -0.345324}, {"Scen2-", "framing.y", -0.086331},
    // Scen4-E rounds its canvas off the right and bottom, so its centred framing is not centred (ASC 7.4.1, 7.4.8).
    {"Scen4-", "framing.x", -0.208549}, {"Scen4-", "framing.y", -0.472366}, {"Scen4-", "protection.y", -0.472366},
};

double deviation(const std::string& set, const std::string& number) {
    for (const Deviation& known : deviations) {
        if (set.starts_with(known.set) && number == known.number) return known.ours;
    }
    return 0;
}

}  // namespace

// Each result file of the ASC holds the source canvas first, the canvas the
// template made of its first decision second, and the template.
TEST(CanvasTemplateTest, TheASCsResultSetsAreReproducedToAThousandthOfAPixel) {
    int sets = 0;
    for (const auto& entry : std::filesystem::directory_iterator(testDataPath("fdl/templates"))) {
        const std::string name = entry.path().filename().string();
        if (name.find("-RESULT") == std::string::npos) continue;
        ++sets;
        FramingDecisionList list = sample("templates/" + name);
        ASSERT_EQ(list.contexts.at(0).canvases.size(), 2u) << entry.path();
        const FDLCanvas& source = list.contexts[0].canvases[0];
        const FDLCanvas& expected = list.contexts[0].canvases[1];
        FDLCanvas made = applyCanvasTemplate(source, source.framingDecisions.at(0), list.canvasTemplates.at(0), expected.id);

        auto madeNumbers = geometry(made), expectedNumbers = geometry(expected);
        ASSERT_EQ(madeNumbers.size(), expectedNumbers.size()) << entry.path();
        for (std::size_t i = 0; i < madeNumbers.size(); ++i) {
            EXPECT_EQ(madeNumbers[i].first, expectedNumbers[i].first) << entry.path();
            double published = expectedNumbers[i].second;
            EXPECT_NEAR(madeNumbers[i].second, published + deviation(name, madeNumbers[i].first), 0.001)
                << name << ": " << madeNumbers[i].first;
        }
        EXPECT_EQ(made.framingDecisions.at(0).id, expected.framingDecisions.at(0).id);
        EXPECT_EQ(made.sourceCanvasID, source.id);

        list.contexts[0].canvases.pop_back();
        FramingDecisionList applied = withCanvasTemplateApplied(list, {}, list.canvasTemplates[0]);
        EXPECT_FALSE(readFramingDecisionList(encodeFramingDecisionList(applied)).hasErrors()) << entry.path();
    }
    EXPECT_EQ(sets, 14);
}

TEST(CanvasTemplateTest, TheNewCanvasFollowsItsSourceUnderAnIDOfItsOwnAndTheListStaysValid) {
    FramingDecisionList list = sample("A_4448x3096_1-3x_FramingChart.fdl");
    CanvasTemplate uhd = sample("templates/Scen18-RESULT-A_4448x3096_1-3x_FramingChart.fdl").canvasTemplates.at(0);
    list.contexts[0].canvases.push_back(list.contexts[0].canvases[0]);
    list.contexts[0].canvases[1].id = "2";
    list.contexts[0].canvases[1].framingDecisions[0].id = "2-1";

    FramingDecisionList once = withCanvasTemplateApplied(list, {"1", std::nullopt}, uhd);
    FramingDecisionList twice = withCanvasTemplateApplied(once, {"1", "1-1"}, uhd);
    const std::vector<FDLCanvas>& canvases = twice.contexts[0].canvases;
    std::vector<std::string> ids;
    for (const FDLCanvas& canvas : canvases) ids.push_back(canvas.id);
    EXPECT_EQ(ids, (std::vector<std::string>{"1", "1_VX220310_2", "1_VX220310", "2"}));
    FramingDecisionList onSecond = withCanvasTemplateApplied(list, {"2", std::nullopt}, uhd);
    EXPECT_EQ(onSecond.contexts[0].canvases.back().id, "2_VX220310");
    EXPECT_EQ(canvases[1].framingDecisions.at(0).id, "1_VX220310_2-1");
    EXPECT_EQ(canvases[1].dimensions, (FDLDimensions{3840, 2160}));
    // Ids stay within 32 characters, the number after the cut.
    CanvasTemplate longNamed = uhd;
    longNamed.id = std::string(40, 'L');
    FramingDecisionList cut = withCanvasTemplateApplied(list, {"1", std::nullopt}, longNamed);
    cut = withCanvasTemplateApplied(cut, {"1", std::nullopt}, longNamed);
    EXPECT_EQ(cut.contexts[0].canvases[1].id, "1_" + std::string(28, 'L') + "_2");
    // Padded to the maximum, the canvas is the maximum: rounding to even has no say.
    const FDLCanvas& source = list.contexts[0].canvases[0];
    for (FDLDimensions maximum : {FDLDimensions{3841, 2161}, FDLDimensions{1, 1}}) {
        uhd.maximumDimensions = maximum;
        EXPECT_EQ(applyCanvasTemplate(source, source.framingDecisions[0], uhd, "odd").dimensions, maximum);
    }
    // Without an effective area of its own, the source gets the pixels its picture covers, and a scaling
    // crumb (1.3 x 2014 x 2160 / 1007 is 5616 less 1e-12) claims no column more.
    CanvasTemplate padded = sample("templates/Scen11-RESULT-J_4320x3456_2x_FramingChart.fdl").canvasTemplates.at(0);
    FDLCanvas squeezed = source;
    squeezed.anamorphicSqueeze = 1.3;
    squeezed.framingDecisions[0].dimensions = {2014, 1007};
    FDLCanvas covered = applyCanvasTemplate(squeezed, squeezed.framingDecisions[0], padded, "covered");
    EXPECT_EQ(covered.effectiveDimensions, (FDLDimensions{5616, 2160}));
    EXPECT_EQ(covered.effectiveAnchorPoint, (FDLPoint{192, 1420}));

    FDLReadResult read = readFramingDecisionList(encodeFramingDecisionList(twice));
    for (const FDLProblem& problem : read.problems) {
        EXPECT_NE(problem.severity, FDLProblem::Severity::error) << problem.text();
    }
}

TEST(CanvasTemplateTest, ALayerOrChoiceTheSourceLacksIsRefusedSayingWhich) {
    using vantel::testing::thrownBy;
    FramingDecisionList list = sample("A_4448x3096_1-3x_FramingChart.fdl");
    CanvasTemplate keepsEffective = sample("templates/Scen18-RESULT-A_4448x3096_1-3x_FramingChart.fdl").canvasTemplates.at(0);
    keepsEffective.preserveFromSourceCanvas = "canvas.effective_dimensions";
    EXPECT_STREQ(thrownBy<CanvasTemplateError>([&] { withCanvasTemplateApplied(list, {}, keepsEffective); }).what(),
                 "the template keeps canvas.effective_dimensions, which canvas \"1\" does not have");

    CanvasTemplate fitsProtection = keepsEffective;
    fitsProtection.preserveFromSourceCanvas.reset();
    fitsProtection.fitSource = "framing_decision.protection_dimensions";
    list.contexts[0].canvases[0].framingDecisions[0].protectionDimensions.reset();
    EXPECT_STREQ(thrownBy<CanvasTemplateError>([&] { withCanvasTemplateApplied(list, {}, fitsProtection); }).what(),
                 "the template fits framing_decision.protection_dimensions, which decision \"1-1\" does not have");

    EXPECT_STREQ(thrownBy<CanvasTemplateError>([&] { withCanvasTemplateApplied(list, {}, CanvasTemplate{}); }).what(),
                 "\"\" is not a layer a template can name");
    fitsProtection.fitSource = "canvas.dimensions";
    fitsProtection.fitMethod = "fill";
    fitsProtection.targetDimensions.height = 0;
    EXPECT_THROW(withCanvasTemplateApplied(list, {}, fitsProtection), CanvasTemplateError);
    EXPECT_THROW(withCanvasTemplateApplied(list, {"9", std::nullopt}, fitsProtection), CanvasTemplateError);
    EXPECT_THROW(withCanvasTemplateApplied(list, {"1", "1-9"}, fitsProtection), CanvasTemplateError);
}

namespace {

// A canvas of one decision, and a template fitting that decision into a
// target with whole-pixel rounding.
FDLCanvas oneDecisionCanvas(FDLDimensions canvas, FDLDimensions framing, FDLPoint anchor = {}) {
    FDLCanvas source;
    source.id = "c";
    source.dimensions = canvas;
    FramingDecision& decision = source.framingDecisions.emplace_back();
    decision.id = "c-1";
    decision.dimensions = framing;
    decision.anchorPoint = anchor;
    return source;
}

CanvasTemplate fittingDecision(FDLDimensions target, const std::string& method, const std::string& direction = "up") {
    CanvasTemplate fitting;
    fitting.targetDimensions = target;
    fitting.fitSource = "framing_decision.dimensions";
    fitting.fitMethod = method;
    fitting.round = CanvasTemplateRound{"whole", direction};
    return fitting;
}

}  // namespace

// Cropped to the maximum, the canvas stays covered by what it was made of,
// even where the alignment would move the fitted layer the other way.
TEST(CanvasTemplateTest, ACropKeepsTheCanvasCovered) {
    FDLCanvas source = oneDecisionCanvas({1000, 500}, {800, 500});
    CanvasTemplate crop = fittingDecision({1000, 500}, "height");
    crop.alignmentMethodHorizontal = "right";
    crop.preserveFromSourceCanvas = "canvas.dimensions";
    crop.maximumDimensions = FDLDimensions{999, 500};  // a crop of one pixel is a crop too
    FDLCanvas made = applyCanvasTemplate(source, source.framingDecisions[0], crop, "cropped");
    EXPECT_EQ(made.dimensions, (FDLDimensions{999, 500}));
    EXPECT_EQ(made.effectiveArea(), made.area());
    EXPECT_EQ(made.framingDecisions.at(0).framing(), (FDLRect{{0, 0}, {800, 500}}));
}

// On the axis fitted, the squeezes cancel and the target is met exactly:
// 1007 pixels squeezed 1.3 and fitted to 1920 are 1920, which "up" keeps,
// not 1920.0000000000002, which "up" made 1921 (and 1028 made 3839 "down").
TEST(CanvasTemplateTest, TheFittedSideOfASqueezedSourceIsTheTargetExactly) {
    for (auto [width, target, direction] : {std::tuple{1007.0, 1920.0, "up"}, std::tuple{1028.0, 3840.0, "down"}}) {
        FDLCanvas source = oneDecisionCanvas({width, 800}, {width, 800});
        source.anamorphicSqueeze = 1.3;
        CanvasTemplate wide = fittingDecision({target, 4000}, "width", direction);
        FDLCanvas made = applyCanvasTemplate(source, source.framingDecisions[0], wide, "scaled");
        EXPECT_EQ(made.dimensions.width, target) << width;
        EXPECT_EQ(made.framingDecisions.at(0).dimensions.width, target) << width;
    }
}

// Neither cropped nor padded, the canvas kept is not moved to align the
// framing: an off-centre framing stays where it was.
TEST(CanvasTemplateTest, WithoutACropOrPaddingNothingMoves) {
    FDLCanvas source = oneDecisionCanvas({1000, 500}, {400, 500}, {600, 0});
    CanvasTemplate kept = fittingDecision({1000, 500}, "height");
    kept.alignmentMethodHorizontal = "left";
    kept.preserveFromSourceCanvas = "canvas.dimensions";
    FDLCanvas made = applyCanvasTemplate(source, source.framingDecisions[0], kept, "kept");
    EXPECT_EQ(made.dimensions, (FDLDimensions{1000, 500}));
    EXPECT_EQ(made.framingDecisions.at(0).framing(), (FDLRect{{600, 0}, {400, 500}}));
}
