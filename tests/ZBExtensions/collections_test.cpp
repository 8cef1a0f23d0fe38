#include <ZBExtensions/Collections.hpp>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace vantel {
namespace {

const std::vector<std::string> three{"a", "b", "c"};

TEST(CollectionsTest, SafeAccessAndPositionTests) {
    EXPECT_EQ(safe(three, 2), "c");
    EXPECT_EQ(safe(three, 3), std::nullopt);
    EXPECT_EQ(safe(three, -1), std::nullopt);
    EXPECT_EQ(looping(three, 4), "b");
    EXPECT_EQ(looping(three, 3), "a");
    EXPECT_TRUE(indexIsValid(three, 0));
    EXPECT_FALSE(indexIsValid(three, 3));
    EXPECT_FALSE(indexIsValid(three, -1));

    const std::vector<int> two{1, 2};
    EXPECT_TRUE(indexIsLast(three, 2, false));
    EXPECT_FALSE(indexIsLast(two, 2, false));
    EXPECT_TRUE(indexIsLast(three, 2, true));
    EXPECT_TRUE(indexIsLast(two, 2, true));
    EXPECT_FALSE(indexIsLast(three, 1, true));
    EXPECT_TRUE(indexIsFirst(three, -3, true));
    EXPECT_FALSE(indexIsFirst(three, -3, false));
    EXPECT_TRUE(indexIsFirst(three, 0, false));
    EXPECT_TRUE(isNotEmpty(three));
    EXPECT_FALSE(isNotEmpty(std::string()));
    EXPECT_TRUE(isFalse(false));
}

TEST(CollectionsDeathTest, LoopingStopsOnEmptyCollectionsAndNegativePositions) {
    EXPECT_DEATH(looping(std::vector<int>{}, 0), "empty collection");
    EXPECT_DEATH(looping(three, -1), "out of range");
}

TEST(CollectionsTest, RangeGivesTheFirstSmallestAndLargest) {
    auto found = range(std::vector<int>{3, 1, 2});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->first, 1);
    EXPECT_EQ(found->second, 3);
    EXPECT_EQ(range(std::vector<int>{}), std::nullopt);

    struct Weighed {
        int weight;
        int id;
        bool operator<(const Weighed& other) const { return weight < other.weight; }
    };
    auto ties = range(std::vector<Weighed>{{5, 0}, {1, 1}, {5, 2}, {1, 3}});
    EXPECT_EQ(ties->first.id, 1);
    EXPECT_EQ(ties->second.id, 0);
}

TEST(CollectionsTest, SortingByAnOrderPlacesUnknownElementsByTheFallbackRank) {
    const std::vector<std::string> order{"a", "b", "c"};
    EXPECT_EQ(sorted(std::vector<std::string>{"c", "x", "a"}, order, false),
              (std::vector<std::string>{"a", "c", "x"}));
    auto unknownFirst = sorted(std::vector<std::string>{"c", "x", "b"}, order, true);
    EXPECT_EQ(unknownFirst.front(), "x");
    EXPECT_EQ(unknownFirst.back(), "c");

    // The fallback is the sorted array's count, so with a short array an
    // unknown element lands before order's later entries.
    std::vector<std::string> shortArray{"x", "c"};
    const std::vector<std::string> longOrder{"a", "b", "z", "w", "c"};
    sort(shortArray, longOrder, false);
    EXPECT_EQ(shortArray, (std::vector<std::string>{"x", "c"}));
}

TEST(CollectionsTest, CompactedKeepsPresentValuesInOrder) {
    std::vector<std::optional<int>> values{1, std::nullopt, 3, std::nullopt};
    EXPECT_EQ(compacted(values), (std::vector<int>{1, 3}));
    EXPECT_TRUE(compacted(std::vector<std::optional<int>>{std::nullopt}).empty());
}

}  // namespace
}  // namespace vantel
