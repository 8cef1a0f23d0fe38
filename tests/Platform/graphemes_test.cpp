#include <Platform/Graphemes.hpp>

#include <gtest/gtest.h>

using Clusters = std::vector<std::string_view>;

TEST(GraphemesTest, CharactersAreUserPerceivedNotBytesOrCodePoints) {
    EXPECT_EQ(vantel::graphemeClusters("ab"), (Clusters{"a", "b"}));
    EXPECT_EQ(vantel::graphemeClusters("a\r\nb"), (Clusters{"a", "\r\n", "b"}));
    EXPECT_EQ(vantel::graphemeClusters("\u00E9e\u0301!"), (Clusters{"\u00E9", "e\u0301", "!"}));
    EXPECT_EQ(vantel::graphemeClusters("\U0001F44D\U0001F3FD"), (Clusters{"\U0001F44D\U0001F3FD"}));
    EXPECT_TRUE(vantel::graphemeClusters("").empty());
}

TEST(GraphemesTest, LastCharacterLooksBackAcrossJoinedCodePoints) {
    EXPECT_EQ(vantel::lastGraphemeCluster(""), "");
    EXPECT_EQ(vantel::lastGraphemeCluster("ab"), "b");
    EXPECT_EQ(vantel::lastGraphemeCluster("a\r\n"), "\r\n");
    EXPECT_EQ(vantel::lastGraphemeCluster("xe\u0301"), "e\u0301");
    EXPECT_EQ(vantel::lastGraphemeCluster("e\u0301"), "e\u0301");
    EXPECT_EQ(vantel::lastGraphemeCluster("a\U0001F44D\U0001F3FD"), "\U0001F44D\U0001F3FD");
}
