#pragma once

// File URLs: an absolute path, marked as a directory or not, written as a
// percent-encoded "file://" address.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vantel {

class URL {
public:
    // A relative path is taken from the current directory.
    static URL fileURL(const std::filesystem::path& path, bool isDirectory = false);
    // "file:///a%20b/c" (percent-decoded; host empty or "localhost") or a plain
    // path; a trailing slash marks a directory. Nothing for other schemes,
    // other hosts, bad escapes and empty text.
    static std::optional<URL> fromString(std::string_view text);

    // The path without a trailing slash ("/" for the root).
    std::filesystem::path path() const { return path_; }
    bool hasDirectoryPath() const { return isDirectory_; }
    // "file:///a%20b/c", with a trailing slash for directories.
    std::string absoluteString() const;

    std::string lastPathComponent() const;  // "/" for the root
    // What follows the last dot of the last component; empty when there is
    // none or the component starts with its only dot (".profile").
    std::string pathExtension() const;

    URL appendingPathComponent(std::string_view component, bool isDirectory = false) const;
    URL deletingLastPathComponent() const;  // a directory; the root stays the root
    // An empty extension changes nothing.
    URL appendingPathExtension(std::string_view extension) const;
    URL deletingPathExtension() const;

    friend bool operator==(const URL&, const URL&) = default;

private:
    URL(std::string path, bool isDirectory) : path_(std::move(path)), isDirectory_(isDirectory) {}

    std::string path_;
    bool isDirectory_ = false;
};

}  // namespace vantel
