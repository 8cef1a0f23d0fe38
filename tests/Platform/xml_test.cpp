#include <Platform/XML.hpp>

#include <gtest/gtest.h>

using vantel::XMLDocument;
using vantel::XMLElement;

TEST(XMLTest, AttributesKeepOrderAndTheFirstValueWins) {
    XMLElement circle("circle");
    circle.addAttribute("cx", "1.0");
    circle.addAttribute("stroke", "#000000");
    circle.addAttribute("cx", "9.0");
    circle.addAttribute("stroke-opacity", "0.5");
    using Pairs = std::vector<std::pair<std::string, std::string>>;
    EXPECT_EQ(circle.attributes(), (Pairs{{"cx", "1.0"}, {"stroke", "#000000"}, {"stroke-opacity", "0.5"}}));
    EXPECT_EQ(circle.attribute("cx"), "1.0");
    EXPECT_EQ(circle.attribute("r"), std::nullopt);
    EXPECT_EQ(circle.xmlString(), R"(<circle cx="1.0" stroke="#000000" stroke-opacity="0.5"/>)");
}

TEST(XMLTest, ChildrenMoveBetweenParentsAndOutliveTheirFirstParent) {
    XMLElement detached("line");
    {
        XMLElement group("g");
        group.addChild(XMLElement("circle"));
        group.addChild(XMLElement("line"));
        group.addText("  ");
        ASSERT_EQ(group.childCount(), 2u);
        EXPECT_FALSE(group.hasOnlyElementChildren());
        detached = group.children()[1].detach();
        EXPECT_EQ(group.xmlString(), "<g><circle/>  </g>");
        std::vector<XMLElement> replacement;
        replacement.emplace_back("rect");
        group.replaceChildren(std::move(replacement));
        EXPECT_EQ(group.xmlString(), "<g><rect/></g>");
        EXPECT_TRUE(group.hasOnlyElementChildren());
    }
    detached.addAttribute("x1", "0.0");
    EXPECT_EQ(detached.xmlString(), R"(<line x1="0.0"/>)");
}

TEST(XMLTest, DocumentsPrettyPrintWithoutBlankTextAndEscape) {
    XMLElement root("svg");
    root.addAttribute("title", "a < b & \"c\"");
    XMLElement group("g");
    group.addText("\n   \n");
    group.addChild(XMLElement("circle"));
    root.addChild(std::move(group));
    XMLElement label("text");
    label.addText("Tom & Jerry");
    root.addChild(std::move(label));
    XMLDocument doc(std::move(root));

    EXPECT_EQ(doc.xmlString(true),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<svg title=\"a &lt; b &amp; &quot;c&quot;\">\n"
              "  <g>\n    <circle/>\n  </g>\n"
              "  <text>Tom &amp; Jerry</text>\n"
              "</svg>\n");
    // Pretty printing works on a copy: the tree keeps its text.
    EXPECT_EQ(doc.root().children()[0].text(), "\n   \n");
    EXPECT_EQ(doc.root().children()[1].text(), "Tom & Jerry");
}
