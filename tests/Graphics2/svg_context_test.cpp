#include <Graphics2/SVGContext.hpp>
#include <Graphics2/SVGElement.hpp>
#include <Graphics2/Size.hpp>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace vantel;

namespace {

Drawable stroked(double x, const Color& color) { return Drawable(Circle(x, 0, 1)).strokeColor(color).strokeWidth(x); }

std::vector<std::string> childNames(const XMLElement& element) {
    std::vector<std::string> names;
    for (const auto& child : element.children()) names.push_back(child.name() + child.attribute("cx").value_or(""));
    return names;
}

struct TinySketch : Sketch {
    Size size() const override { return Size{120.9, 80.2, 0}; }
    Drawable body() const override { return GroupDrawable({Circle(1, 1, 1), Line(0, 0, 1, 1)}); }
};

}  // namespace

TEST(SVGContextTest, FreshDocumentHasTheRootAttributesInOrder) {
    SVGContext context(200, 100);
    EXPECT_EQ(context.svgString(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<svg width=\"200\" height=\"100\" xmlns=\"http://www.w3.org/2000/svg\" "
              "xmlns:inkscape=\"http://www.inkscape.org/namespaces/inkscape\"/>\n");
}

TEST(SVGContextTest, OnlyTheDrawableOverloadPrintsAndDebugPicksTheDebugForm) {
    testing::internal::CaptureStdout();
    SVGContext context(10, 10, false, Circle(1, 1, 1), Line(0, 0, 1, 1));
    context.addShape(Drawable(Circle(2, 2, 2)));
    context.addShape(Drawable(EmptyDrawable()));
    context.debug = true;
    context.addShape(BezierPath({Vector(0, 0, 1), Vector(1, 1, 1)}));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Adding Circle to SVG\n");
    EXPECT_EQ(childNames(context.svg()), (std::vector<std::string>{"circle1.0", "line", "circle2.0", "g"}));

    testing::internal::CaptureStdout();
    SVGContext fromSketch{TinySketch()};
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Adding GroupDrawable to SVG\n");
    EXPECT_EQ(fromSketch.width(), 120);
    EXPECT_EQ(fromSketch.svg().children()[0].childCount(), 2u);
}

TEST(SVGContextTest, GroupsIntoLayersAndBreaksThemAgain) {
    testing::internal::CaptureStdout();
    SVGContext context(10, 10, false,
                       {stroked(1, Color(1, 0, 0, 0.5)), stroked(2, Color(0, 0, 1, 1)), stroked(3, Color(1, 0, 0, 0.5))});
    testing::internal::GetCapturedStdout();
    context.groupElements(SVGAttribute::strokeOpacity);
    std::vector<std::string> labels;
    for (const auto& layer : context.svg().children()) {
        EXPECT_EQ(layer.attribute("inkscape:groupmode"), "layer");
        labels.push_back(*layer.attribute("inkscape:label"));
        if (layer.attribute("id") == "0.5") {
            EXPECT_EQ(childNames(layer), (std::vector<std::string>{"circle1.0", "circle3.0"}));
        }
    }
    EXPECT_EQ(labels.size(), 2u);
    EXPECT_TRUE(labels[0] == "1-0.5" || labels[0] == "1-");

    // A second pass finds no such attribute on the layers: one unnamed layer.
    context.groupElements(SVGAttribute::strokeOpacity);
    ASSERT_EQ(context.svg().childCount(), 1u);
    EXPECT_EQ(context.svg().children()[0].attribute("inkscape:label"), "1-");
    context.breakGroups();
    EXPECT_EQ(childNames(context.svg()), (std::vector<std::string>{"g", "g"}));
    context.breakGroups();
    EXPECT_EQ(context.svg().childCount(), 3u);

    context.groupElements(SVGAttribute::strokeWidth);
    // A width of 1 writes no attribute: layers "", "2.0" and "3.0".
    ASSERT_EQ(context.svg().childCount(), 3u);
}

TEST(SVGContextTest, WritesIntoMadeFoldersWithTheExtensionRule) {
    auto folder = std::filesystem::temp_directory_path() / ("svg_context_test_" + std::to_string(::getpid()));
    SVGContext context(10, 10, false, Circle(1, 1, 1));
    context.writeSVG("a", URL::fileURL(folder, true), true);
    context.writeSVG("b.svg", URL::fileURL(folder, true), false);
    context.writeSVG("c.SVG", URL::fileURL(folder, true), false);
    EXPECT_TRUE(std::filesystem::exists(folder / "SVG" / "a.svg"));
    EXPECT_TRUE(std::filesystem::exists(folder / "b.svg"));
    EXPECT_TRUE(std::filesystem::exists(folder / "c.SVG.svg"));
    std::ifstream file(folder / "b.svg");
    std::string text((std::istreambuf_iterator<char>(file)), {});
    EXPECT_EQ(text, context.svgString(true));
    EXPECT_NE(text.find("\n  <circle"), std::string::npos);
    std::filesystem::remove_all(folder);

    auto blocked = std::filesystem::temp_directory_path() / ("svg_context_blocked_" + std::to_string(::getpid()));
    std::ofstream(blocked) << "a file";
    EXPECT_THROW(context.writeSVG(blocked / "x.svg"), std::filesystem::filesystem_error);
    std::filesystem::remove(blocked);
}

// A web address's path or a name that is not one file component would write
// outside the folder the caller chose.
TEST(SVGContextTest, WritesOnlyOneFileInsideALocalFolder) {
    auto folder = std::filesystem::temp_directory_path() / ("svg_context_names_" + std::to_string(::getpid()));
    auto escaped = folder.string() + "-escaped";
    SVGContext context(10, 10);
    URL web = *URL::fromString("https://example.com" + folder.string() + "/web.svg");
    EXPECT_THROW(context.writeSVG(web), std::filesystem::filesystem_error);
    EXPECT_THROW(context.writeSVG("web", web.deletingLastPathComponent(), false), std::filesystem::filesystem_error);
    for (const std::string& name : {escaped, std::string("../escaped"), std::string("sub/a"), std::string("..")}) {
        EXPECT_THROW(context.writeSVG(name, URL::fileURL(folder, true), false), std::filesystem::filesystem_error)
            << name;
    }
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_FALSE(std::filesystem::exists(escaped + ".svg"));
    std::filesystem::remove_all(folder);
}
