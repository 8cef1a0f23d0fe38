#include <ZBExtensions/RegularExpressionMatching.hpp>
#include <ZBExtensions/Strings.hpp>

#include <Platform/Collation.hpp>
#include <Platform/Graphemes.hpp>
#include <Platform/UnicodeText.hpp>

#include <algorithm>

namespace vantel {
namespace {

// Whether a space goes before the upper-case letter about to be appended.
// After a capital, only when the text so far is that one capital: the
// second letter of a text always splits from the first.
bool spaceBeforeCapital(std::string_view textSoFar) {
    std::string_view last = lastGraphemeCluster(textSoFar);
    if (!isUppercaseLetter(decodeCodePoint(last, 0).value)) return true;
    return last.size() == textSoFar.size();
}

}  // namespace

std::string camelCaps(std::string_view text) {
    if (text.empty()) return std::string();
    std::size_t first = decodeCodePoint(text, 0).length;
    std::string result(text.substr(0, first));
    for (std::size_t at = first; at < text.size();) {
        DecodedCodePoint next = decodeCodePoint(text, at);
        if (isUppercaseLetter(next.value) && spaceBeforeCapital(result)) result += ' ';
        result += text.substr(at, next.length);
        at += next.length;
    }
    return result;
}

std::string minified(std::string_view text) {
    std::string result(text);
    std::erase(result, '\n');
    return result;
}

std::string trimmingWhiteSpace(std::string_view text) { return std::string(trimmingCodePoints(text, isSpaceOrTab)); }

std::optional<std::string> substring(std::string_view text, std::string_view pattern) {
    std::optional<RegularExpression> expression = RegularExpression::compile(pattern);
    if (!expression) return std::nullopt;
    std::optional<RegularExpression::Match> match = firstMatch(*expression, text);
    if (!match) return std::nullopt;
    return matchedString(*match, expression->numberOfCaptureGroups() == 1 ? 1 : 0, text);
}

bool matches(std::string_view text, std::string_view regex) {
    std::optional<RegularExpression> expression = RegularExpression::compile(regex);
    return expression && firstMatch(*expression, text).has_value();
}

bool naturallyPrecedes(std::string_view a, std::string_view b) { return compareNaturally(a, b) < 0; }

}  // namespace vantel
