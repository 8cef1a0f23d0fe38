// `vantel info --json` run as a script runs it: the output is JSON, and the
// rectangles it gives in whole pixels are where the rendered PNG shows each
// guide's outline. The command is run through the process runner.

#include <ImageReaders.hpp>
#include <Platform/FileIO.hpp>
#include <Platform/JSON.hpp>
#include <TestSupport.hpp>
#include <ZBExtensions/Process.hpp>

#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <cstdlib>

using namespace vantel;
using vantel::testing::thrownBy;

namespace {

const std::string vantel = VANTEL_COMMAND;
const std::string sample = std::string(VANTEL_SOURCE_DIR) + "/examples/sample.aspectratio";

ProcessOutput runVantel(std::vector<std::string> arguments) {
    auto task = std::make_shared<Task>();
    task->launchPath = vantel;
    task->arguments = std::move(arguments);
    return run(task, false);
}

double number(const CodingValue& dictionary, std::string_view key) {
    const CodingValue* value = dictionary.find(key);
    if (value == nullptr) throw std::runtime_error("no " + std::string(key));
    return value->kind() == CodingValue::Kind::integer ? static_cast<double>(value->asInteger()) : value->asReal();
}

std::array<int, 3> rgb(const std::string& hex) {
    auto channel = [&hex](int at) { return static_cast<int>(std::strtol(hex.substr(at, 2).c_str(), nullptr, 16)); };
    return {channel(1), channel(3), channel(5)};
}

// Mostly covered by the colour: straight-alpha pixels keep the colour of a
// faint edge, so coverage counts too.
bool near(std::array<int, 4> pixel, std::array<int, 3> colour) {
    if (pixel[3] < 128) return false;
    for (int i = 0; i < 3; ++i) {
        if (std::abs(pixel[i] - colour[i]) > 8) return false;
    }
    return true;
}

void collectGuides(const CodingValue& guides, std::vector<const CodingValue*>& all) {
    for (const CodingValue& guide : guides.asArray()) {
        all.push_back(&guide);
        collectGuides(*guide.find("children"), all);
    }
}

}  // namespace

TEST(InfoJSONTest, SnappedRectanglesAreWhereTheOutlinesAreDrawn) {
    ProcessOutput info = runVantel({"info", "--json", sample});
    CodingValue document = JSONDecoder().parse(info.response);
    EXPECT_EQ(number(*document.find("canvas"), "width"), 1920);
    std::vector<const CodingValue*> guides;
    collectGuides(*document.find("guides"), guides);
    ASSERT_EQ(guides.size(), 4u);

    vantel::testing::TemporaryFolder folder;
    runVantel({"render", sample, "-o", (folder / "sample.png").string()});
    vantel::testing::DecodedImage image = vantel::testing::readPNG(readData(folder / "sample.png"));

    for (const CodingValue* guide : guides) {
        const CodingValue& pixels = *guide->find("pixels");
        const auto outline = rgb(guide->find("outline")->find("hex")->asString());
        const int weight = static_cast<int>(number(*guide, "weight"));
        const int left = static_cast<int>(number(pixels, "x"));
        const int right = left + static_cast<int>(number(pixels, "width")) - 1;
        const int middle = static_cast<int>(number(pixels, "y") + number(pixels, "height") / 2);
        const std::string ratio = guide->find("ratio")->asString();
        for (int inside : {left + 1, left + weight - 2, right - 1, right - weight + 2}) {
            EXPECT_TRUE(near(image.at(inside, middle), outline)) << ratio << " at x " << inside;
        }
        for (int outside : {left - 1, right + 1}) {
            EXPECT_FALSE(near(image.at(outside, middle), outline)) << ratio << " at x " << outside;
        }
    }
}

TEST(InfoJSONTest, BadDocumentsFailThroughTheRunner) {
    auto error = thrownBy<ProcessError>([] { return runVantel({"info", "--json", "/nonexistent.aspectratio"}); });
    EXPECT_EQ(error.task->terminationStatus(), 3);
    EXPECT_EQ(error.stdOut, Data{});
    EXPECT_EQ(error.failureReason(), "/nonexistent.aspectratio: cannot read: No such file or directory\n");
}
