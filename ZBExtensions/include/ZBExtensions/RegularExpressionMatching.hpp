#pragma once

// Searching a whole text with a RegularExpression and reading the groups of
// its matches. "Whole" follows the rule of Strings.hpp: the search covers as
// many UTF-16 units as the text has user-perceived characters.

#include <Platform/RegularExpression.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantel {

std::optional<RegularExpression::Match> firstMatch(const RegularExpression& expression, std::string_view text);
// Every match in order; empty when there is none.
std::vector<RegularExpression::Match> matches(const RegularExpression& expression, std::string_view text);

// The text of capture group `group` (0: the whole match) in `text`, the text
// that was searched; absent when the group took no part in the match or
// there is no such group.
std::optional<std::string> matchedString(const RegularExpression::Match& match, std::size_t group,
                                         std::string_view text);
// The same for a named group, (?<name>...).
std::optional<std::string> matchedString(const RegularExpression::Match& match, std::string_view name,
                                         std::string_view text);

}  // namespace vantel
