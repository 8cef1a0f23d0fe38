#include <FramingDecisions/FDLReading.hpp>

#include <Platform/FileIO.hpp>

#include "TestSupport.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

using namespace vantel;
using vantel::testing::testDataPath;

namespace {

const char* const decision = "contexts[0].canvases[0].framing_decisions[0]";

std::string sampleText() {
    Data bytes = readData(testDataPath("fdl/A_4448x3096_1-3x_FramingChart.fdl"), 1 << 20);
    return {bytes.begin(), bytes.end()};
}

// The sample with the first `from` replaced by `to`.
FDLReadResult readChanged(const std::string& from, const std::string& to) {
    std::string text = sampleText();
    std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return readFramingDecisionList(Data(text.begin(), text.end()));
}

bool reports(const FDLReadResult& read, FDLProblem::Severity severity, const std::string& path) {
    return std::any_of(read.problems.begin(), read.problems.end(), [&](const FDLProblem& problem) {
        return problem.severity == severity && problem.path == path;
    });
}

std::string allProblems(const FDLReadResult& read) {
    std::string text;
    for (const FDLProblem& problem : read.problems) text += problem.text() + "\n";
    return text;
}

}  // namespace

TEST(FDLReadingTest, CameraSamplesPassAndKeepTheirValuesExactly) {
    int samples = 0;
    for (const auto& entry : std::filesystem::directory_iterator(testDataPath("fdl"))) {
        if (entry.path().extension() != ".fdl") continue;
        ++samples;
        FDLReadResult read = readFramingDecisionList(readData(entry.path(), 1 << 20));
        EXPECT_FALSE(read.hasErrors()) << entry.path() << "\n" << allProblems(read);
        EXPECT_TRUE(read.document.has_value());
    }
    EXPECT_GE(samples, 3);

    // Its protection spills out of the effective area: usable, but said.
    FDLReadResult read = readFramingDecisionList(readData(testDataPath("fdl/A65_effective-area_wdesqueeze.fdl"), 1 << 20));
    EXPECT_TRUE(reports(read, FDLProblem::Severity::warning, std::string(decision) + ".protection_dimensions"));
    const FramingDecision& framing = read.document->contexts[0].canvases[0].framingDecisions[0];
    EXPECT_EQ(framing.protectionDimensions->width, 3710.7000000000003);
    EXPECT_EQ(framing.anchorPoint.x, 754.5245);
    EXPECT_EQ(framing.framing().snapped(), (FDLRect{{755, 227}, {3450, 2336}}));
}

TEST(FDLReadingTest, BrokenCopiesAreRefusedWithTheirPath) {
    using enum FDLProblem::Severity;
    const std::string path = decision;
    EXPECT_TRUE(reports(readChanged("\"width\": 3810", "\"width\": 0"), error, path + ".dimensions.width"));
    EXPECT_TRUE(reports(readChanged("\"width\": 4448", "\"width\": 4448.5"), error, "contexts[0].canvases[0].dimensions.width"));
    EXPECT_TRUE(reports(readChanged("\"x\": 319", "\"x\": -1"), error, path + ".anchor_point.x"));
    EXPECT_TRUE(reports(readChanged("\"uuid\": \"ae69dfdc-", "\"uuid\": \"ae69dfdc"), error, "uuid"));
    EXPECT_TRUE(reports(readChanged("\"id\": \"1-1\"", "\"id\": \"1_1\""), error, path + ".id"));
    EXPECT_TRUE(reports(readChanged("\"framing_intent_id\": \"1\"", "\"framing_intent_id\": \"2\""), error,
                        path + ".framing_intent_id"));
    EXPECT_TRUE(reports(readChanged("\"default_framing_intent\": \"1\"", "\"default_framing_intent\": \"9\""), error,
                        "default_framing_intent"));
    EXPECT_TRUE(reports(readChanged("\"source_canvas_id\": \"1\"", "\"source_canvas_id\": \"7\""), error,
                        "contexts[0].canvases[0].source_canvas_id"));
    EXPECT_TRUE(reports(readChanged("\"x\": 107", "\"x\": 300"), error, path + ".protection_dimensions"));
    EXPECT_TRUE(reports(readChanged("\"x\": 319", "\"x\": 19"), error, path + ".dimensions"));
    EXPECT_TRUE(reports(readChanged("\"label\": \"ARRI", "\"clip_id\": {\"clip_name\": \"A\", \"file\": \"a.mov\", "
                                                         "\"sequence\": {\"value\": \"a#.exr\", \"idx\": \"#\", "
                                                         "\"min\": 0, \"max\": 9}}, \"label\": \"ARRI"),
                        error, "contexts[0].clip_id"));
    EXPECT_TRUE(reports(readChanged("\"fdl_creator\"", "\"colour\": 1, \"fdl_creator\""), error, "colour"));
    EXPECT_TRUE(reports(readChanged("0.10012919896599999", "1"), error, "framing_intents[0].protection"));
    EXPECT_TRUE(reports(readChanged("\"fdl_creator\"", "\"canvas_templates\": [{\"id\": \"T1\", \"target_dimensions\": "
                                                     "{\"width\": 1920, \"height\": 1080}, \"target_anamorphic_squeeze\": 1, "
                                                     "\"fit_source\": \"framing_decision.dimensions\", \"fit_method\": "
                                                     "\"stretch\"}], \"fdl_creator\""),
                        error, "canvas_templates[0].fit_method"));
}

TEST(FDLReadingTest, OldVersionsAndUserPropertiesAreReadLeniently) {
    FDLReadResult old = readChanged("\"major\": 2", "\"major\": 1, \"_note\": \"x\"");
    EXPECT_FALSE(old.hasErrors()) << allProblems(old);
    EXPECT_TRUE(reports(old, FDLProblem::Severity::warning, "version"));
    // Before 2.0 a template could preserve "none"; 2.0 leaves the member out instead.
    const std::string noneTemplate = "\"canvas_templates\": [{\"id\": \"T1\", \"target_dimensions\": "
                                     "{\"width\": 1920, \"height\": 1080}, \"target_anamorphic_squeeze\": 1, "
                                     "\"fit_source\": \"framing_decision.dimensions\", \"fit_method\": \"fit_all\", "
                                     "\"preserve_from_source_canvas\": \"none\"}], ";
    std::string oldText = sampleText();
    oldText.replace(oldText.find("\"x\": 107"), 8, "\"x\": 0, \"z\": 0");
    oldText.replace(oldText.find("\"fdl_creator\""), 13, noneTemplate + "\"fdl_creator\"");
    oldText.replace(oldText.find("\"major\": 2"), 10, "\"major\": 1");
    FDLReadResult lenient = readFramingDecisionList(Data(oldText.begin(), oldText.end()));
    EXPECT_TRUE(reports(lenient, FDLProblem::Severity::warning, std::string(decision) + ".protection_anchor_point.z"));
    EXPECT_FALSE(lenient.hasErrors()) << allProblems(lenient);
    EXPECT_TRUE(reports(readChanged("\"major\": 2", "\"major\": 3"), FDLProblem::Severity::error, "version"));

    FDLReadResult tagged = readChanged("\"fdl_creator\"", "\"_vendor_tag\": {\"a\": 1}, \"fdl_creator\"");
    EXPECT_TRUE(tagged.problems.empty()) << allProblems(tagged);
    ASSERT_EQ(tagged.document->userProperties.size(), 1u);
    EXPECT_EQ(tagged.document->userProperties[0].first, "_vendor_tag");
    // A clip may name a file without a sequence.
    FDLReadResult clip = readChanged("\"label\": \"ARRI", "\"clip_id\": {\"clip_name\": \"A\", \"file\": \"a.mov\"}, \"label\": \"ARRI");
    EXPECT_TRUE(clip.problems.empty()) << allProblems(clip);
    EXPECT_TRUE(reports(readChanged("\"fdl_creator\"", noneTemplate + "\"fdl_creator\""), FDLProblem::Severity::error,
                        "canvas_templates[0].preserve_from_source_canvas"));

    FDLReadResult mismatch = readChanged("0.10012919896599999", "0.2");
    EXPECT_FALSE(mismatch.hasErrors());
    EXPECT_TRUE(reports(mismatch, FDLProblem::Severity::warning, std::string(decision) + ".protection_dimensions"));
}

TEST(FDLReadingTest, ListsAreRecognisedByNameOrContent) {
    auto bytes = [](std::string text) { return Data(text.begin(), text.end()); };
    EXPECT_TRUE(isFramingDecisionList(bytes("garbage"), "shot.FDL"));
    EXPECT_TRUE(isFramingDecisionList(bytes("garbage"), ".fdl"));  // as the glob *.fdl takes it
    EXPECT_FALSE(isFramingDecisionList(bytes(""), "stdin"));
    EXPECT_FALSE(isFramingDecisionList(bytes("{\"uuid\": "), "stdin"));
    EXPECT_TRUE(isFramingDecisionList(bytes(" {\"version\": {}, \"uuid\": \"\"}"), "stdin"));
    EXPECT_FALSE(isFramingDecisionList(bytes("{\"uuid\": \"\"}"), "stdin"));
    EXPECT_FALSE(isFramingDecisionList(bytes("<?xml version=\"1.0\"?><plist/>"), "shot.aspectratio"));
    EXPECT_TRUE(readFramingDecisionList(bytes("[1]")).hasErrors());
    EXPECT_TRUE(readFramingDecisionList(bytes("{")).hasErrors());
}
