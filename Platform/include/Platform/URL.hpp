#pragma once

// File and web addresses. A file URL is an absolute path, marked as a
// directory or not, written as a percent-encoded "file://" address; a web URL
// is "http://" or "https://" with a host, a path, and an optional query and
// fragment. A file URL holds its path decoded, as the file system names it.
// A web address keeps its path percent-encoded as written: decoding and
// encoding again would turn an escaped "/" into a separator and fetch
// another resource. Its path is decoded only to name a local file.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vantel {

class URL {
public:
    // A relative path is taken from the current directory.
    static URL fileURL(const std::filesystem::path& path, bool isDirectory = false);
    // "file:///a%20b/c" (percent-decoded; host empty or "localhost"; an
    // escaped "/" or NUL is refused, no file name holds one) or a plain
    // path; a trailing slash marks a directory. "http://host[:port]/path" and
    // "https://..." with an optional "?query" and "#fragment" (kept as
    // written); a "?" or "#" in a file URL starts those too, in a plain path
    // it is part of the name. Nothing for other schemes, other file hosts,
    // bad escapes, characters a URL cannot hold, and empty text.
    static std::optional<URL> fromString(std::string_view text);

    bool isFileURL() const { return scheme_ == "file"; }
    const std::string& scheme() const { return scheme_; }  // "file", "http" or "https"
    // "example.com:8080"; empty for file URLs.
    const std::string& host() const { return host_; }
    const std::optional<std::string>& query() const { return query_; }        // percent-encoded
    const std::optional<std::string>& fragment() const { return fragment_; }  // percent-encoded

    // The path without a trailing slash ("/" for the root; empty for a web
    // address with no path at all): decoded for a file URL, percent-encoded
    // for a web address.
    std::filesystem::path path() const { return path_; }
    bool hasDirectoryPath() const { return isDirectory_; }
    // "file:///a%20b/c", with a trailing slash for directories.
    std::string absoluteString() const;

    std::string lastPathComponent() const;  // "/" for the root; as path() holds it
    // The last component decoded, to name a local file; empty for the root
    // or no path. Nothing when it decodes to no file name: an escaped "/" or
    // NUL, "." or "..".
    std::optional<std::string> lastPathComponentAsFileName() const;
    // What follows the last dot of the last component; empty when there is
    // none or the component starts with its only dot (".profile").
    std::string pathExtension() const;

    // The path operations keep a web address's query and fragment. Text
    // added to a web address is percent-encoded where a path cannot hold it
    // as it is; escapes already in it are kept.
    URL appendingPathComponent(std::string_view component, bool isDirectory = false) const;
    URL deletingLastPathComponent() const;  // a directory; the root stays the root
    // An empty extension changes nothing.
    URL appendingPathExtension(std::string_view extension) const;
    URL deletingPathExtension() const;

    friend bool operator==(const URL&, const URL&) = default;

private:
    URL(std::string path, bool isDirectory) : path_(std::move(path)), isDirectory_(isDirectory) {}
    static std::optional<URL> webURL(std::string_view scheme, std::string_view rest);
    // A copy with another path; scheme, host, query and fragment stay.
    URL withPath(std::string path, bool isDirectory) const;

    std::string scheme_ = "file";
    std::string host_;
    std::string path_;
    bool isDirectory_ = false;
    std::optional<std::string> query_;
    std::optional<std::string> fragment_;
};

}  // namespace vantel
