#pragma once

// Text operations on UTF-8 strings: splitting camel case, zero-padding
// numbers, bumping a trailing counter, trimming, regular-expression
// extraction, batch replacement and natural order.
//
// Every regular-expression search here (and in RegularExpressionMatching.hpp)
// covers as many UTF-16 units from the start as the text has user-perceived
// characters. Text with characters outside the basic plane or with combining
// marks has more units than characters, so its tail is not searched: "e"
// with a combining accent followed by "7" has two characters and three
// units, and the 7 is never found. Callers rely on this; keep it.

#include <Platform/RegularExpression.hpp>

#include <cstdint>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vantel {

// Spaces before capitals: "helloWorld" gives "hello World". A capital right
// after another stays with it ("myURLValue" gives "my URLValue"), except that
// the second letter of the text always splits off the first capital
// ("ABCdef" gives "A BCdef"). Nothing is capitalised.
std::string camelCaps(std::string_view text);

// Every run of decimal digits shorter than `width` gets `pad` in front of
// it once per missing digit; `pad` is repeated whole, so a two-character pad
// adds two characters per digit. Longer runs stay as they are.
std::string paddingNumbers(std::string_view text, int width, std::string_view pad);
void padNumbers(std::string& text, int width, std::string_view pad);

// Bumps the counter at the end of the text: "shot" gives "shot-1", "shot-1"
// gives "shot-2". The counter is found with the pattern delimiter + "\d+$",
// the delimiter taken as regular-expression syntax as it stands. Without a
// counter (or with one that is not a number once the delimiter's characters
// are trimmed from it) the text gets `starting` appended. The new value is
// written with `format`, which may hold at most one integer conversion
// ("%d", "%03d", "%x", ...) and is written as it stands without one
// ("plain" gives "plain"); any other conversion, or a second one, is a
// programming error and stops the process, as does a counter that overflows.
std::string incrementingCounter(std::string_view text, std::int64_t starting = 1, std::int64_t by = 1,
                                std::string_view format = "%d", std::string_view delimiter = "-");
void incrementCounter(std::string& text, std::int64_t starting = 1, std::int64_t by = 1, std::string_view format = "%d",
                      std::string_view delimiter = "-");

// The text without line feeds; carriage returns and other white space stay.
std::string minified(std::string_view text);

// The text without leading and trailing spaces and tabs (the space
// separators); line breaks are not trimmed, so a trailing newline stays.
// A copy, not a view: the argument is often a temporary.
std::string trimmingWhiteSpace(std::string_view text);

inline bool isNotEmpty(std::string_view text) { return !text.empty(); }
inline std::string orEmpty(const std::optional<std::string>& text) { return text.value_or(std::string()); }

// The first match of `pattern`: the text of its one capture group when it
// has exactly one, otherwise the whole match (also with two or more groups).
// Absent when nothing matches or the pattern does not compile.
std::optional<std::string> substring(std::string_view text, std::string_view pattern);

// Whether `regex` matches anywhere in the text; false for a pattern that
// does not compile.
bool matches(std::string_view text, std::string_view regex);

// Natural order: whether `a` comes strictly before `b` when digit runs
// compare by value and case is ignored ("file2" before "file10"; "a" does
// not precede "A"). A strict weak order, so it sorts.
bool naturallyPrecedes(std::string_view a, std::string_view b);

// naturallyPrecedes as a comparator: std::sort(names.begin(), names.end(), NaturalOrder{}).
struct NaturalOrder {
    bool operator()(std::string_view a, std::string_view b) const { return naturallyPrecedes(a, b); }
};

// More inputs than replacements in batchReplacingOccurrences.
class StringReplacementError : public std::runtime_error {
public:
    static StringReplacementError tooManyElements(std::int64_t elementCount, std::int64_t replacementCount);

    std::int64_t elementCount;
    std::int64_t replacementCount;

private:
    StringReplacementError(std::int64_t elementCount, std::int64_t replacementCount);
};

// How batchReplacingOccurrences finds its target; combine with |.
enum class CompareOptions : unsigned {
    none = 0,
    caseInsensitive = 1,
    // The target is a regular expression and replacements may name its
    // groups as $1, $2, ...
    regularExpression = 2,
};
constexpr CompareOptions operator|(CompareOptions a, CompareOptions b) {
    return static_cast<CompareOptions>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

// Input i with every occurrence of `target` replaced by replacements[i],
// inside `range` (UTF-16 units, the same for every input) when one is given.
// Throws StringReplacementError when there are fewer replacements than
// inputs, and RegularExpressionError for a target expression that does not
// compile. Extra replacements are unused.
std::vector<std::string> batchReplacingOccurrences(const std::vector<std::string_view>& inputs, std::string_view target,
                                                   const std::vector<std::string>& replacements,
                                                   CompareOptions options = CompareOptions::none,
                                                   std::optional<RegularExpression::Range> range = std::nullopt);

template <class Strings>
    requires requires(const Strings& strings) { std::string_view(*std::begin(strings)); }
std::vector<std::string> batchReplacingOccurrences(const Strings& inputs, std::string_view target,
                                                   const std::vector<std::string>& replacements,
                                                   CompareOptions options = CompareOptions::none,
                                                   std::optional<RegularExpression::Range> range = std::nullopt) {
    std::vector<std::string_view> views;
    for (const auto& input : inputs) views.emplace_back(input);
    return batchReplacingOccurrences(views, target, replacements, options, range);
}

}  // namespace vantel
