#pragma once

// Conveniences on file and web addresses: names, extensions and query texts.

#include <Platform/NumberText.hpp>
#include <Platform/URL.hpp>

#include <concepts>
#include <cstdint>
#include <ranges>
#include <string>
#include <string_view>
#include <type_traits>

namespace vantel {

// The last path component without its extension: "a.b.png" gives "a.b".
std::string filename(const URL& url);

// The extension removed, then the given one added; an empty one leaves none.
URL replacingPathExtension(const URL& url, std::string_view extension);
void replacePathExtension(URL& url, std::string_view extension);

// The last component replaced by `name`. Keeping the extension appends the
// old one even when `name` has its own: x.png replaced by y.jpg gives
// y.jpg.png. Callers rely on that to keep a file's type while renaming it.
URL replacingLastPathComponent(const URL& url, std::string_view name, bool preserveExtension);
void replaceLastPathComponent(URL& url, std::string_view name, bool preserveExtension);

// The counter at the end of the file name moved on, the extension kept:
// folder/shot-3.png gives folder/shot-4.png, folder/shot.png gives
// folder/shot-1.png. The name's rules are those of the text's
// incrementingCounter, with the same arguments.
URL incrementingCounter(const URL& url, std::int64_t starting = 1, std::int64_t by = 1, std::string_view format = "%d",
                        std::string_view delimiter = "-");
void incrementCounter(URL& url, std::int64_t starting = 1, std::int64_t by = 1, std::string_view format = "%d",
                      std::string_view delimiter = "-");

// The text with every byte outside the query-allowed characters (letters,
// digits, "-._~!$&'()*+,;=:@/?") percent-encoded. "&", "=", "+" and "?" pass
// as they are, so a key or value holding them changes the query's meaning:
// callers pass plain words. Text that is not UTF-8 stops the process.
std::string percentEncodedForQuery(std::string_view text);

// How a key or value of a query dictionary reads as text.
inline std::string describing(std::string_view text) { return std::string(text); }
inline std::string describing(const char* text) { return text; }
inline std::string describing(bool value) { return value ? "true" : "false"; }
inline std::string describing(double value) { return numberText(value); }
template <std::integral Integer>
    requires(!std::same_as<Integer, bool> && !std::same_as<Integer, char>)
std::string describing(Integer value) {
    return std::to_string(value);
}

// A dictionary whose keys and values read as text makes a query text.
template <class Dictionary>
concept URLQueryParameterStringConvertible =
    std::ranges::input_range<const Dictionary> &&
    requires(std::ranges::range_reference_t<const Dictionary> entry) {
        { describing(entry.first) } -> std::convertible_to<std::string>;
        { describing(entry.second) } -> std::convertible_to<std::string>;
    };

// "key=value" pairs joined with "&", in the dictionary's own order (an
// unordered map gives no fixed order). An empty dictionary gives "".
template <URLQueryParameterStringConvertible Dictionary>
std::string queryParameters(const Dictionary& parameters) {
    std::string query;
    for (const auto& [key, value] : parameters) {
        if (!query.empty()) query += '&';
        query += percentEncodedForQuery(describing(key)) + "=" + percentEncodedForQuery(describing(value));
    }
    return query;
}

// The address text, "?", then the query: the "?" is always added, so an
// address with a query gets a second one and an empty dictionary leaves a
// trailing "?". Text that does not read back as a URL stops the process.
URL appendingQueryText(const URL& url, std::string_view query);

template <URLQueryParameterStringConvertible Dictionary>
URL appendingQueryParameters(const URL& url, const Dictionary& parameters) {
    return appendingQueryText(url, queryParameters(parameters));
}

}  // namespace vantel
