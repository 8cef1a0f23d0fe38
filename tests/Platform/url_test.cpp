#include <Platform/URL.hpp>

#include <gtest/gtest.h>

using namespace vantel;

TEST(URLTest, FileURLsPercentEncodeTheirPath) {
    URL url = URL::fileURL("/tmp/a folder/ü#1?.plist");
    EXPECT_EQ(url.absoluteString(), "file:///tmp/a%20folder/%C3%BC%231%3F.plist");
    EXPECT_EQ(URL::fileURL("/tmp/out", true).absoluteString(), "file:///tmp/out/");
    EXPECT_EQ(URL::fileURL("/").absoluteString(), "file:///");
    EXPECT_EQ(URL::fileURL("/tmp/x/").path(), "/tmp/x");
    EXPECT_TRUE(URL::fileURL("/tmp/x/").hasDirectoryPath());
    EXPECT_EQ(URL::fileURL("relative/doc.plist").path(), std::filesystem::current_path() / "relative/doc.plist");
}

TEST(URLTest, TextParsesAsFileURLOrPlainPath) {
    auto spaced = URL::fromString("file:///path%20with%20spaces/doc.plist");
    ASSERT_TRUE(spaced);
    EXPECT_EQ(spaced->path(), "/path with spaces/doc.plist");
    EXPECT_EQ(spaced->absoluteString(), "file:///path%20with%20spaces/doc.plist");
    EXPECT_EQ(URL::fromString("file://localhost/a/b"), URL::fileURL("/a/b"));
    EXPECT_EQ(URL::fromString("/a/b/"), URL::fileURL("/a/b", true));
    URL encoded = URL::fileURL("/tmp/a b%c");
    EXPECT_EQ(URL::fromString(encoded.absoluteString()), encoded);
    for (const char* bad : {"", "https://example.com/a", "file://server/a", "file:///a%2", "file:///a%zz"}) {
        EXPECT_FALSE(URL::fromString(bad).has_value()) << bad;
    }
}

TEST(URLTest, ComponentsAndExtensions) {
    URL url = URL::fileURL("/docs/a.b.png");
    EXPECT_EQ(url.lastPathComponent(), "a.b.png");
    EXPECT_EQ(url.pathExtension(), "png");
    EXPECT_EQ(url.deletingPathExtension().path(), "/docs/a.b");
    EXPECT_EQ(url.deletingPathExtension().appendingPathExtension("jpg").path(), "/docs/a.b.jpg");
    EXPECT_EQ(url.appendingPathExtension("").path(), "/docs/a.b.png");
    EXPECT_EQ(URL::fileURL("/docs/.profile").pathExtension(), "");
    EXPECT_EQ(URL::fileURL("/docs/.profile").deletingPathExtension().path(), "/docs/.profile");
    EXPECT_EQ(URL::fileURL("/docs/README").pathExtension(), "");
    EXPECT_EQ(URL::fileURL("/").lastPathComponent(), "/");
}

TEST(URLTest, AppendingAndDeletingComponents) {
    URL folder = URL::fileURL("/docs", true);
    URL file = folder.appendingPathComponent("x.plist");
    EXPECT_EQ(file.absoluteString(), "file:///docs/x.plist");
    EXPECT_EQ(folder.appendingPathComponent("sub", true).absoluteString(), "file:///docs/sub/");
    EXPECT_EQ(URL::fileURL("/").appendingPathComponent("a").path(), "/a");
    EXPECT_EQ(file.deletingLastPathComponent(), folder);
    EXPECT_EQ(URL::fileURL("/a").deletingLastPathComponent(), URL::fileURL("/"));
    EXPECT_EQ(URL::fileURL("/").deletingLastPathComponent(), URL::fileURL("/"));
    EXPECT_NE(URL::fileURL("/docs"), folder);  // a file and a folder of one path differ
}
