#include <Platform/URL.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>

namespace vantel {

namespace {

constexpr std::string_view fileScheme = "file://";

bool isAlphanumeric(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

// Unreserved characters and the delimiters a path may hold as they are.
bool allowedInPath(unsigned char c) {
    if (isAlphanumeric(c)) return true;
    return std::string_view("-._~!$&'()*+,;=:@/").find(static_cast<char>(c)) != std::string_view::npos;
}

// What a written web address may hold in its path, query and fragment: the
// path characters, "?" and escapes.
bool allowedInAddress(unsigned char c) { return allowedInPath(c) || c == '?' || c == '%'; }

bool allowedInHost(unsigned char c) {
    if (isAlphanumeric(c)) return true;
    return std::string_view("-._~!$&'()*+,;=:[]%").find(static_cast<char>(c)) != std::string_view::npos;
}

bool allOf(std::string_view text, bool (*allowed)(unsigned char)) {
    for (unsigned char c : text) {
        if (!allowed(c)) return false;
    }
    return true;
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

// The byte of the escape starting at `at`, or nothing when there is none.
std::optional<char> escapeAt(std::string_view text, std::size_t at) {
    if (text[at] != '%' || at + 2 >= text.size()) return std::nullopt;
    int high = hexValue(text[at + 1]);
    int low = hexValue(text[at + 2]);
    if (high < 0 || low < 0) return std::nullopt;
    return static_cast<char>(high * 16 + low);
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            decoded += text[at];
            continue;
        }
        std::optional<char> byte = escapeAt(text, at);
        if (!byte) return std::nullopt;
        decoded += *byte;
        at += 2;
    }
    return decoded;
}

// Decoded for the file system: an escaped "/" would join two names into a
// path the text did not spell, and a NUL would cut the name short there.
std::optional<std::string> decodedForFileSystem(std::string_view text) {
    auto decoded = percentDecoded(text);
    if (!decoded || decoded->find('\0') != std::string::npos) return std::nullopt;
    auto slashes = [](std::string_view part) { return std::count(part.begin(), part.end(), '/'); };
    if (slashes(*decoded) != slashes(text)) return std::nullopt;
    return decoded;
}

// Text for a web path: what a path may hold stays, escapes already written
// stay, and every other byte (a lone "%" too) is escaped.
std::string encodedForWebPath(std::string_view text) {
    std::string encoded;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (escapeAt(text, at)) {
            encoded += text.substr(at, 3);
            at += 2;
        } else {
            encoded += percentEncoded(text.substr(at, 1));
        }
    }
    return encoded;
}

// The text after the first `separator`, cut off from `text`; nothing when
// the separator does not occur.
std::optional<std::string> splitOff(std::string_view& text, char separator) {
    std::size_t at = text.find(separator);
    if (at == std::string_view::npos) return std::nullopt;
    std::string after(text.substr(at + 1));
    text = text.substr(0, at);
    return after;
}

bool isWellFormedPart(const std::optional<std::string>& part) {
    return !part || (allOf(*part, allowedInAddress) && percentDecoded(*part).has_value());
}

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
    if (text.size() < prefix.size()) return false;
    for (std::size_t at = 0; at < prefix.size(); ++at) {
        if (std::tolower(static_cast<unsigned char>(text[at])) != prefix[at]) return false;
    }
    return true;
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
    for (std::string_view scheme : {"http", "https"}) {
        std::string prefix = std::string(scheme) + "://";
        if (startsWithIgnoringCase(text, prefix)) return webURL(scheme, text.substr(prefix.size()));
    }
    if (!text.starts_with(fileScheme)) {
        if (text.find("://") != std::string_view::npos) return std::nullopt;
        return fileURL(std::string(text));
    }
    text.remove_prefix(fileScheme.size());
    std::optional<std::string> fragment = splitOff(text, '#');
    std::optional<std::string> query = splitOff(text, '?');
    std::size_t slash = text.find('/');
    if (slash == std::string_view::npos) return std::nullopt;
    std::string_view host = text.substr(0, slash);
    if (!host.empty() && host != "localhost") return std::nullopt;
    auto path = decodedForFileSystem(text.substr(slash));
    if (!path || !isWellFormedPart(query) || !isWellFormedPart(fragment)) return std::nullopt;
    URL url = fileURL(*path);
    url.query_ = std::move(query);
    url.fragment_ = std::move(fragment);
    return url;
}

std::optional<URL> URL::webURL(std::string_view scheme, std::string_view rest) {
    std::optional<std::string> fragment = splitOff(rest, '#');
    std::optional<std::string> query = splitOff(rest, '?');
    std::string_view host = rest.substr(0, rest.find('/'));
    std::string_view path = rest.substr(host.size());
    if (host.empty() || !allOf(host, allowedInHost) || !allOf(path, allowedInAddress)) return std::nullopt;
    if (!isWellFormedPart(query) || !isWellFormedPart(fragment)) return std::nullopt;
    if (!percentDecoded(path)) return std::nullopt;
    bool isDirectory = path.ends_with('/');
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    URL url{std::string(path), isDirectory};
    url.scheme_ = scheme;
    url.host_ = host;
    url.query_ = std::move(query);
    url.fragment_ = std::move(fragment);
    return url;
}

URL URL::withPath(std::string path, bool isDirectory) const {
    URL url = *this;
    url.path_ = std::move(path);
    url.isDirectory_ = isDirectory;
    return url;
}

std::string URL::absoluteString() const {
    std::string text = scheme_ + "://" + host_ + (isFileURL() ? percentEncoded(path_) : path_);
    if (isDirectory_ && path_ != "/") text += '/';
    if (query_) text += "?" + *query_;
    if (fragment_) text += "#" + *fragment_;
    return text;
}

std::string URL::lastPathComponent() const {
    if (path_ == "/" || path_.empty()) return path_;
    return path_.substr(path_.rfind('/') + 1);
}

std::optional<std::string> URL::lastPathComponentAsFileName() const {
    std::string last = path_ == "/" ? "" : lastPathComponent();
    auto name = isFileURL() ? std::optional<std::string>(last) : decodedForFileSystem(last);
    if (!name || name->find('\0') != std::string::npos || *name == "." || *name == "..") return std::nullopt;
    return name;
}

std::string URL::pathExtension() const {
    std::string last = lastPathComponent();
    std::size_t dot = last.rfind('.');
    if (dot == std::string::npos || dot == 0) return "";
    return last.substr(dot + 1);
}

URL URL::appendingPathComponent(std::string_view component, bool isDirectory) const {
    std::string name = isFileURL() ? std::string(component) : encodedForWebPath(component);
    if (name.size() > 1 && name.back() == '/') isDirectory = true;
    while (!name.empty() && name.back() == '/') name.pop_back();
    while (!name.empty() && name.front() == '/') name.erase(name.begin());
    if (name.empty()) return withPath(path_, isDirectory_ || isDirectory);
    std::string joined = path_ == "/" || path_.empty() ? "/" + name : path_ + "/" + name;
    return withPath(std::move(joined), isDirectory);
}

URL URL::deletingLastPathComponent() const {
    std::size_t slash = path_.rfind('/');
    if (path_ == "/" || path_.empty() || slash == 0) return withPath("/", true);
    return withPath(path_.substr(0, slash), true);
}

URL URL::appendingPathExtension(std::string_view extension) const {
    if (extension.empty() || path_ == "/" || path_.empty()) return *this;
    std::string added = isFileURL() ? std::string(extension) : encodedForWebPath(extension);
    return withPath(path_ + "." + added, isDirectory_);
}

URL URL::deletingPathExtension() const {
    std::string extension = pathExtension();
    if (extension.empty()) return *this;
    return withPath(path_.substr(0, path_.size() - extension.size() - 1), isDirectory_);
}

}  // namespace vantel
