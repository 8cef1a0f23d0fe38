#include <ZBExtensions/RegularExpressionMatching.hpp>

#include <Platform/UnicodeText.hpp>

namespace vantel {

std::optional<RegularExpression::Match> firstMatch(const RegularExpression& expression, std::string_view text) {
    return expression.firstMatch(text, 0, graphemeCount(text));
}

std::vector<RegularExpression::Match> matches(const RegularExpression& expression, std::string_view text) {
    return expression.matches(text, 0, graphemeCount(text));
}

std::optional<std::string> matchedString(const RegularExpression::Match& match, std::size_t group,
                                         std::string_view text) {
    if (group >= match.size() || !match[group]) return std::nullopt;
    return RegularExpression::substring(text, *match[group]);
}

std::optional<std::string> matchedString(const RegularExpression::Match& match, std::string_view name,
                                         std::string_view text) {
    std::optional<std::size_t> group = match.groupNumber(name);
    if (!group) return std::nullopt;
    return matchedString(match, *group, text);
}

}  // namespace vantel
