#include <ZBExtensions/URLExtensions.hpp>

#include <ZBExtensions/Strings.hpp>

#include <Platform/Fatal.hpp>
#include <Platform/UnicodeText.hpp>

#include <array>
#include <cstdio>

namespace vantel {

std::string filename(const URL& url) { return url.deletingPathExtension().lastPathComponent(); }

URL replacingPathExtension(const URL& url, std::string_view extension) {
    return url.deletingPathExtension().appendingPathExtension(extension);
}

void replacePathExtension(URL& url, std::string_view extension) { url = replacingPathExtension(url, extension); }

URL replacingLastPathComponent(const URL& url, std::string_view name, bool preserveExtension) {
    URL replaced = url.deletingLastPathComponent().appendingPathComponent(name);
    return preserveExtension ? replaced.appendingPathExtension(url.pathExtension()) : replaced;
}

void replaceLastPathComponent(URL& url, std::string_view name, bool preserveExtension) {
    url = replacingLastPathComponent(url, name, preserveExtension);
}

URL incrementingCounter(const URL& url, std::int64_t starting, std::int64_t by, std::string_view format,
                        std::string_view delimiter) {
    const std::string stem = vantel::incrementingCounter(filename(url), starting, by, format, delimiter);
    return replacingLastPathComponent(url, stem, true);
}

void incrementCounter(URL& url, std::int64_t starting, std::int64_t by, std::string_view format,
                      std::string_view delimiter) {
    url = incrementingCounter(url, starting, by, format, delimiter);
}

namespace {

bool allowedInQuery(unsigned char c) {
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return true;
    return std::string_view("-._~!$&'()*+,;=:@/?").find(static_cast<char>(c)) != std::string_view::npos;
}

}  // namespace

std::string percentEncodedForQuery(std::string_view text) {
    if (!isValidUTF8(text)) fatalError("Query text is not UTF-8 and cannot be percent-encoded");
    std::string encoded;
    encoded.reserve(text.size());
    for (unsigned char c : text) {
        if (allowedInQuery(c)) {
            encoded += static_cast<char>(c);
            continue;
        }
        std::array<char, 4> escape{};
        std::snprintf(escape.data(), escape.size(), "%%%02X", c);
        encoded += escape.data();
    }
    return encoded;
}

URL appendingQueryText(const URL& url, std::string_view query) {
    std::string text = url.absoluteString() + "?" + std::string(query);
    auto appended = URL::fromString(text);
    if (!appended) fatalError("Not a URL after adding the query: " + text);
    return *appended;
}

}  // namespace vantel
