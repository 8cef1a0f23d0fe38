#include <ZBExtensions/URLExtensions.hpp>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace vantel {
namespace {

URL web(const char* text) { return *URL::fromString(text); }

TEST(URLExtensionsTest, FilenameAndExtensionReplacement) {
    EXPECT_EQ(filename(URL::fileURL("/shots/a.b.png")), "a.b");
    EXPECT_EQ(filename(web("https://example.com/docs/plan.aspectratio?v=2")), "plan");
    EXPECT_EQ(replacingPathExtension(URL::fileURL("/shots/a.b.png"), "jpg").path(), "/shots/a.b.jpg");
    EXPECT_EQ(replacingPathExtension(URL::fileURL("/shots/a.png"), "").path(), "/shots/a");
    URL url = web("https://example.com/x.png?size=2");
    replacePathExtension(url, "pdf");
    EXPECT_EQ(url.absoluteString(), "https://example.com/x.pdf?size=2");
}

TEST(URLExtensionsTest, ReplacingTheLastComponentKeepsTheOldExtensionEvenBesideANewOne) {
    URL original = URL::fileURL("/shots/x.png");
    EXPECT_EQ(replacingLastPathComponent(original, "y.jpg", true).path(), "/shots/y.jpg.png");
    EXPECT_EQ(replacingLastPathComponent(original, "y.jpg", false).path(), "/shots/y.jpg");
    EXPECT_EQ(replacingLastPathComponent(URL::fileURL("/shots/README"), "y", true).path(), "/shots/y");
    replaceLastPathComponent(original, "z", true);
    EXPECT_EQ(original.path(), "/shots/z.png");
}

TEST(URLExtensionsTest, CountersMoveOnInTheNameAndKeepTheExtension) {
    EXPECT_EQ(incrementingCounter(URL::fileURL("/folder/shot-3.png")).path(), "/folder/shot-4.png");
    EXPECT_EQ(incrementingCounter(URL::fileURL("/folder/shot.png")).path(), "/folder/shot-1.png");
    URL url = web("https://example.com/take_09.aspectratio");
    incrementCounter(url, 1, 2, "%02d", "_");
    EXPECT_EQ(url.absoluteString(), "https://example.com/take_11.aspectratio");
}

TEST(URLExtensionsTest, QueryTextEncodesOnlyWhatAQueryCannotHold) {
    EXPECT_EQ(queryParameters(std::map<std::string, std::string>{}), "");
    std::map<std::string, std::string> parameters{{"name", "a b#ü%"}, {"q", "x&y=z+?/"}};
    EXPECT_EQ(queryParameters(parameters), "name=a%20b%23%C3%BC%25&q=x&y=z+?/");
    std::vector<std::pair<const char*, double>> numbers{{"zoom", 2.0}, {"ratio", 1.5}};
    EXPECT_EQ(queryParameters(numbers), "zoom=2.0&ratio=1.5");
    std::vector<std::pair<std::string, bool>> flags{{"dark", true}};
    EXPECT_EQ(queryParameters(flags), "dark=true");
}

TEST(URLExtensionsTest, AppendingAQueryAlwaysInsertsAQuestionMark) {
    std::map<std::string, std::string> none;
    EXPECT_EQ(appendingQueryParameters(web("https://example.com/a"), none).absoluteString(), "https://example.com/a?");
    std::map<std::string, std::string> size{{"w", "10"}};
    URL twice = appendingQueryParameters(web("https://example.com/a?x=1"), size);
    EXPECT_EQ(twice.absoluteString(), "https://example.com/a?x=1?w=10");
    EXPECT_EQ(twice.query(), "x=1?w=10");
    EXPECT_EQ(appendingQueryParameters(URL::fileURL("/tmp/a b"), size).absoluteString(), "file:///tmp/a%20b?w=10");
}

TEST(URLExtensionsDeathTest, TextThatIsNotUTF8CannotBeEncoded) {
    std::map<std::string, std::string> bad{{"k", "\xff"}};
    EXPECT_DEATH(queryParameters(bad), "not UTF-8");
}

}  // namespace
}  // namespace vantel
