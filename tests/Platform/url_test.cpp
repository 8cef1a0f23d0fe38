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
    for (const char* bad : {"", "ftp://example.com/a", "file://server/a", "file:///a%2", "file:///a%zz",
                            "https:///a", "https://example.com/a b", "http://ex ample.com/", "https://h/a?q=%zz"}) {
        EXPECT_FALSE(URL::fromString(bad).has_value()) << bad;
    }
}

TEST(URLTest, ComponentsAndExtensionsAreAppendedAndDeleted) {
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

TEST(URLTest, WebAddressesKeepHostQueryAndFragment) {
    auto url = URL::fromString("HTTPS://example.com:8443/docs/a%20b.x.png?size=2&x=%C3%BC#top");
    ASSERT_TRUE(url);
    EXPECT_FALSE(url->isFileURL());
    EXPECT_EQ(url->scheme(), "https");
    EXPECT_EQ(url->host(), "example.com:8443");
    EXPECT_EQ(url->path(), "/docs/a%20b.x.png");
    EXPECT_EQ(url->lastPathComponentAsFileName(), "a b.x.png");
    EXPECT_EQ(url->query(), "size=2&x=%C3%BC");
    EXPECT_EQ(url->fragment(), "top");
    EXPECT_EQ(url->absoluteString(), "https://example.com:8443/docs/a%20b.x.png?size=2&x=%C3%BC#top");
    EXPECT_EQ(url->deletingPathExtension().absoluteString(), "https://example.com:8443/docs/a%20b.x?size=2&x=%C3%BC#top");
    EXPECT_EQ(url->deletingLastPathComponent().appendingPathComponent("c").absoluteString(),
              "https://example.com:8443/docs/c?size=2&x=%C3%BC#top");

    auto bare = URL::fromString("http://example.com");
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->lastPathComponent(), "");
    EXPECT_EQ(bare->appendingPathComponent("a.png").absoluteString(), "http://example.com/a.png");
    EXPECT_EQ(URL::fromString("http://example.com/docs/")->absoluteString(), "http://example.com/docs/");
    EXPECT_NE(URL::fromString("http://example.com/a"), URL::fromString("https://example.com/a"));

    auto withQuery = URL::fromString("file:///tmp/x.png?");
    ASSERT_TRUE(withQuery);
    EXPECT_EQ(withQuery->path(), "/tmp/x.png");
    EXPECT_EQ(withQuery->query(), "");
    EXPECT_EQ(withQuery->absoluteString(), "file:///tmp/x.png?");
}

// Decoding a web path and encoding it again would make "x%2Fy" two names and
// "..%2F" a step up; a file URL cannot hold an escaped "/" or NUL at all.
TEST(URLTest, WebPathsKeepTheirEscapesAndDecodeOnlyIntoOneFileName) {
    for (const char* text : {"http://h/a/x%2Fy.png", "http://h/a/..%2f..%2fetc", "http://h/a%00b", "http://h/a/%2e%2E"}) {
        auto url = URL::fromString(text);
        ASSERT_TRUE(url) << text;
        EXPECT_EQ(url->absoluteString(), text);
        EXPECT_FALSE(url->lastPathComponentAsFileName()) << text;
    }
    URL folder = *URL::fromString("http://h/a%2Fb/");
    EXPECT_EQ(folder.appendingPathComponent("c d%2F100%").absoluteString(), "http://h/a%2Fb/c%20d%2F100%25");
    EXPECT_EQ(folder.lastPathComponentAsFileName(), std::nullopt);
    EXPECT_EQ(URL::fromString("http://h/")->lastPathComponentAsFileName(), "");
    EXPECT_FALSE(URL::fromString("file:///tmp/a%2Fb"));
    EXPECT_FALSE(URL::fromString("file:///tmp/a%00b"));
}
