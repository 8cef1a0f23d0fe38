#include <Platform/URL.hpp>

#include <array>
#include <cstdio>

namespace vantel {

namespace {

constexpr std::string_view fileScheme = "file://";

// Unreserved characters and the delimiters a path may hold as they are.
bool allowedInPath(unsigned char c) {
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return true;
    return std::string_view("-._~!$&'()*+,;=:@/").find(static_cast<char>(c)) != std::string_view::npos;
}

std::string percentEncoded(std::string_view path) {
    std::string text;
    text.reserve(path.size());
    for (unsigned char c : path) {
        if (allowedInPath(c)) {
            text += static_cast<char>(c);
            continue;
        }
        std::array<char, 4> escape{};
        std::snprintf(escape.data(), escape.size(), "%%%02X", c);
        text += escape.data();
    }
    return text;
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            decoded += text[at];
            continue;
        }
        if (at + 2 >= text.size()) return std::nullopt;
        int high = hexValue(text[at + 1]);
        int low = hexValue(text[at + 2]);
        if (high < 0 || low < 0) return std::nullopt;
        decoded += static_cast<char>(high * 16 + low);
        at += 2;
    }
    return decoded;
}

// Absolute, without trailing slashes (but "/" stays).
std::string normalizedPath(const std::filesystem::path& path) {
    std::string text = std::filesystem::absolute(path).string();
    while (text.size() > 1 && text.back() == '/') text.pop_back();
    return text;
}

}  // namespace

URL URL::fileURL(const std::filesystem::path& path, bool isDirectory) {
    std::string text = path.string();
    if (text.empty()) return URL(normalizedPath(std::filesystem::current_path()), true);
    if (text.size() > 1 && text.back() == '/') isDirectory = true;
    return URL(normalizedPath(path), isDirectory || text == "/");
}

std::optional<URL> URL::fromString(std::string_view text) {
    if (text.empty()) return std::nullopt;
    if (!text.starts_with(fileScheme)) {
        if (text.find("://") != std::string_view::npos) return std::nullopt;
        return fileURL(std::string(text));
    }
    text.remove_prefix(fileScheme.size());
    std::size_t slash = text.find('/');
    if (slash == std::string_view::npos) return std::nullopt;
    std::string_view host = text.substr(0, slash);
    if (!host.empty() && host != "localhost") return std::nullopt;
    auto path = percentDecoded(text.substr(slash));
    if (!path) return std::nullopt;
    return fileURL(*path);
}

std::string URL::absoluteString() const {
    std::string text = std::string(fileScheme) + percentEncoded(path_);
    if (isDirectory_ && path_ != "/") text += '/';
    return text;
}

std::string URL::lastPathComponent() const {
    if (path_ == "/") return path_;
    return path_.substr(path_.rfind('/') + 1);
}

std::string URL::pathExtension() const {
    std::string last = lastPathComponent();
    std::size_t dot = last.rfind('.');
    if (dot == std::string::npos || dot == 0) return "";
    return last.substr(dot + 1);
}

URL URL::appendingPathComponent(std::string_view component, bool isDirectory) const {
    std::string name(component);
    if (name.size() > 1 && name.back() == '/') isDirectory = true;
    while (!name.empty() && name.back() == '/') name.pop_back();
    while (!name.empty() && name.front() == '/') name.erase(name.begin());
    if (name.empty()) return URL(path_, isDirectory_ || isDirectory);
    std::string joined = path_ == "/" ? "/" + name : path_ + "/" + name;
    return URL(std::move(joined), isDirectory);
}

URL URL::deletingLastPathComponent() const {
    std::size_t slash = path_.rfind('/');
    if (path_ == "/" || slash == 0) return URL("/", true);
    return URL(path_.substr(0, slash), true);
}

URL URL::appendingPathExtension(std::string_view extension) const {
    if (extension.empty() || path_ == "/") return *this;
    return URL(path_ + "." + std::string(extension), isDirectory_);
}

URL URL::deletingPathExtension() const {
    std::string extension = pathExtension();
    if (extension.empty()) return *this;
    return URL(path_.substr(0, path_.size() - extension.size() - 1), isDirectory_);
}

}  // namespace vantel
