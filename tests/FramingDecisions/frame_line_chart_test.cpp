#include <FramingDecisions/FrameLineChart.hpp>

#include <gtest/gtest.h>

#include <optional>
#include <string>

using namespace vantel;

namespace {

FDLCanvas canvas(std::string id, std::vector<std::string> decisions) {
    FDLCanvas made;
    made.id = std::move(id);
    for (std::string& id : decisions) {
        FramingDecision decision;
        decision.id = std::move(id);
        made.framingDecisions.push_back(std::move(decision));
    }
    return made;
}

FrameLineChoice choice(std::optional<std::string> canvasID, std::optional<std::string> decisionID = std::nullopt) {
    FrameLineChoice made;
    made.canvasID = std::move(canvasID);
    made.decisionID = std::move(decisionID);
    return made;
}

std::string failure(const FramingDecisionList& list, const FrameLineChoice& choice) {
    try {
        chosenCanvas(list, choice);
    } catch (const FrameLineChoiceError& error) {
        return error.what();
    }
    return "chosen";
}

}  // namespace

// Two contexts, the first without canvases: the default skips to the first
// canvas there is, and ids are found in any context.
TEST(FrameLineChartTest, CanvasesAndDecisionsAreChosenByIdAcrossContexts) {
    FramingDecisionList list;
    list.contexts.resize(2);
    list.contexts[1].canvases = {canvas("A", {"A-1", "A-2"}), canvas("B", {"B-1", "B-2"})};

    EXPECT_EQ(chosenCanvas(list, {}).id, "A");
    EXPECT_EQ(chosenCanvas(list, {}).framingDecisions.size(), 2u);
    FDLCanvas byDecision = chosenCanvas(list, choice(std::nullopt, "B-2"));
    EXPECT_EQ(byDecision.id, "B");
    ASSERT_EQ(byDecision.framingDecisions.size(), 1u);
    EXPECT_EQ(byDecision.framingDecisions[0].id, "B-2");

    EXPECT_EQ(failure(list, choice("C")), "no canvas \"C\"");
    EXPECT_EQ(failure(list, choice("A", "B-1")), "canvas \"A\" has no framing decision \"B-1\"");
    EXPECT_EQ(failure(FramingDecisionList{}, {}), "no canvas to draw");
}
