#include <ZBExtensions/TreeItem.hpp>

#include <Platform/JSON.hpp>

#include <gtest/gtest.h>

using namespace vantel;
using Tree = TreeItem<std::string>;

namespace {

std::vector<std::string> objects(const std::vector<Tree::Node>& nodes) {
    std::vector<std::string> result;
    for (const auto& node : nodes) result.push_back(node->object);
    return result;
}

}  // namespace

TEST(TreeItemTest, FlatteningDepthAndSearch) {
    auto a = Tree::make("a");
    EXPECT_TRUE(a->isLeaf());
    EXPECT_EQ(a->depth(), 0);
    EXPECT_TRUE(a->flatChildren().empty());

    auto b = Tree::make("b");
    a->addChildren({b, Tree::make("c")});
    b->addChildren({std::string("d"), std::string("a")});
    EXPECT_EQ(objects(a->flatChildren()), (std::vector<std::string>{"b", "d", "a", "c"}));
    EXPECT_EQ(a->search("d")->depth(), 2);
    EXPECT_EQ(a->search("d")->description(), "<TreeItem d 2>");
    // The receiver is never found; a descendant with its object is.
    EXPECT_EQ(a->search("a"), b->children[1]);
    EXPECT_EQ(a->child("x"), nullptr);
}

TEST(TreeItemTest, InsertionPositionsAndTheEqualObjectQuirk) {
    auto tree = Tree::make("root");
    tree->addChildren({std::string("p"), std::string("q")});
    tree->addChildren({std::string("x"), std::string("y")}, 0);
    EXPECT_EQ(objects(tree->children), (std::vector<std::string>{"x", "y", "p", "q"}));
    tree->addChildren({std::string("m"), std::string("n")}, 10);
    EXPECT_EQ(objects(tree->children), (std::vector<std::string>{"x", "y", "p", "q", "m", "n"}));

    // A node equal to the receiver is inserted but keeps its own parent.
    auto elsewhere = Tree::make("elsewhere");
    auto twin = Tree::make("root");
    elsewhere->addChildren({twin});
    tree->addChildren({twin});
    EXPECT_EQ(twin->parent(), elsewhere);
    EXPECT_EQ(tree->children.back(), twin);
    EXPECT_DEATH(tree->addChildren({Tree::make("z")}, -1), "negative position");
}

TEST(TreeItemTest, RemovalTakesTheFirstEqualChildAndClearsTheGivenParent) {
    auto tree = Tree::make("root");
    auto first = Tree::make("same");
    auto second = Tree::make("same");
    tree->addChildren({first, Tree::make("other"), second});
    tree->removeChildren({second});
    ASSERT_EQ(tree->children.size(), 2u);
    EXPECT_EQ(tree->children.back(), second) << "the earlier equal sibling goes";
    EXPECT_EQ(second->parent(), nullptr);
    EXPECT_EQ(first->parent(), tree);
}

TEST(TreeItemTest, CodingRoundTripKeepsShapeAndLeavesParentsUnset) {
    auto tree = Tree::make("a");
    tree->addChildren({std::string("b"), std::string("c")});
    tree->children[0]->addChildren({std::string("d")});
    Data json = JSONEncoder().encode(*tree);
    EXPECT_EQ(std::string(json.begin(), json.end()),
              R"({"object":"a","children":[{"object":"b","children":[{"object":"d","children":[]}]},)"
              R"({"object":"c","children":[]}]})");
    auto decoded = JSONDecoder().decode<Tree::Decoded>(json).node;
    EXPECT_EQ(objects(decoded->flatChildren()), (std::vector<std::string>{"b", "d", "c"}));
    for (const auto& node : decoded->flatChildren()) EXPECT_EQ(node->parent(), nullptr);
    EXPECT_THROW(JSONDecoder().decode<Tree::Decoded>(Data{'{', '}'}), DecodingError);
}
