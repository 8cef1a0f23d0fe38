#include <FramingDecisions/FDLReading.hpp>
#include <FramingDecisions/FDLWriting.hpp>

#include <Platform/FileIO.hpp>
#include <Platform/JSON.hpp>

#include "TestSupport.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

using namespace vantel;
using vantel::testing::testDataPath;

namespace {

Data sample(const std::string& name) { return readData(testDataPath("fdl/" + name), 1 << 20); }

Data replaced(Data bytes, const std::string& from, const std::string& to) {
    std::string text(bytes.begin(), bytes.end());
    std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return Data(text.begin(), text.end());
}

}  // namespace

TEST(FDLWritingTest, AListWrittenBackIsItsFileByteForByteAndKeepsMembersOrderAndNumbers) {
    for (const auto& entry : std::filesystem::directory_iterator(testDataPath("fdl"))) {
        if (entry.path().extension() != ".fdl") continue;
        Data bytes = readData(entry.path(), 1 << 20);
        FDLReadResult read = readFramingDecisionList(bytes);
        ASSERT_TRUE(read.document) << entry.path();
        Data written = encodeFramingDecisionList(*read.document, &read.json);
        EXPECT_EQ(std::string(written.begin(), written.end()), std::string(bytes.begin(), bytes.end())) << entry.path();
    }

    // The writer's own properties inside a size, members out of the schema's
    // order, an empty label: all as the file has them.
    Data bytes = replaced(sample("A_4448x3096_1-3x_FramingChart.fdl"), "\"width\": 4448,\n            \"height\": 3096",
                          "\"_note\": [1, \"x\"], \"height\": 3096, \"width\": 4448.0");
    FDLReadResult read = readFramingDecisionList(bytes);
    FDLCanvas added = read.document->contexts[0].canvases[0];
    added.id = "2";
    added.anamorphicSqueeze = 1;
    added.dimensions.width = 1920;
    read.document->contexts[0].canvases.push_back(added);
    read.document->contexts[0].canvases[0].framingDecisions[0].anchorPoint.x = 320.5;
    read.document->canvasTemplates.emplace_back().id = "hd";  // the file has none

    CodingValue written = JSONDecoder().parse(encodeFramingDecisionList(*read.document, &read.json));
    const CodingValue::Array& canvases = written.find("contexts")->asArray()[0].find("canvases")->asArray();
    ASSERT_EQ(canvases.size(), 2u);
    CodingValue source = JSONDecoder().parse(bytes).find("contexts")->asArray()[0].find("canvases")->asArray()[0];
    EXPECT_EQ(*canvases[0].find("dimensions"), *source.find("dimensions"));
    EXPECT_EQ(*canvases[0].find("framing_decisions")->asArray()[0].find("anchor_point")->find("x"),
              CodingValue::real(320.5));
    // A canvas of its own is written in the schema's order and forms.
    EXPECT_EQ(*canvases[1].find("dimensions"),
              CodingValue::dictionary({{"width", CodingValue::integer(1920)}, {"height", CodingValue::integer(3096)}}));
    std::vector<std::string> keys;
    for (const auto& entry : canvases[1].asDictionary()) keys.push_back(entry.first);
    EXPECT_EQ(keys, (std::vector<std::string>{"label", "id", "source_canvas_id", "dimensions", "anamorphic_squeeze",
                                              "framing_decisions"}));
    EXPECT_EQ(*canvases[1].find("anamorphic_squeeze"), CodingValue::real(1));
    EXPECT_EQ(written.find("canvas_templates")->asArray().size(), 1u);
}

TEST(FDLWritingTest, AListMadeHereReadsBackAsItselfWithoutProblems) {
    FDLReadResult read = readFramingDecisionList(sample("A65_effective-area_wdesqueeze.fdl"));
    FramingDecisionList list = *read.document;
    CanvasTemplate hd;
    hd.id = "hd";
    hd.targetDimensions = {1920, 1080};
    hd.fitSource = "framing_decision.dimensions";
    hd.fitMethod = "fit_all";
    hd.maximumDimensions = FDLDimensions{2048, 1152};
    hd.padToMaximum = true;
    list.canvasTemplates.push_back(hd);
    FDLCanvas& canvas = list.contexts[0].canvases[0];
    for (FDLUserProperties* properties : {&list.userProperties, &list.framingIntents[0].userProperties,
                                          &list.contexts[0].userProperties, &canvas.userProperties,
                                          &canvas.framingDecisions[0].userProperties, &list.canvasTemplates[0].userProperties}) {
        properties->emplace_back("_vantel", CodingValue::string("made here"));
    }

    Data bytes = encodeFramingDecisionList(list);
    FDLReadResult again = readFramingDecisionList(bytes);
    ASSERT_TRUE(again.document);
    for (const FDLProblem& problem : again.problems) {
        EXPECT_NE(problem.severity, FDLProblem::Severity::error) << problem.text();
    }
    EXPECT_TRUE(*again.document == list);
    EXPECT_EQ(again.json.asDictionary().back().first, "_vantel");
    EXPECT_EQ(*again.json.find("canvas_templates")->asArray()[0].find("maximum_dimensions"),
              CodingValue::dictionary({{"width", CodingValue::integer(2048)}, {"height", CodingValue::integer(1152)}}));
    EXPECT_EQ(bytes.back(), '\n');

    // A canvas size the model holds fractionally is written as it is, for
    // the check to refuse, never cut to a whole number.
    canvas.dimensions.width += 0.5;
    EXPECT_TRUE(readFramingDecisionList(encodeFramingDecisionList(list)).hasErrors());
}
