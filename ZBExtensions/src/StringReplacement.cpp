#include <ZBExtensions/Strings.hpp>

#include <Platform/UnicodeText.hpp>

namespace vantel {
namespace {

bool has(CompareOptions options, CompareOptions option) {
    return (static_cast<unsigned>(options) & static_cast<unsigned>(option)) != 0;
}

RegularExpression targetExpression(std::string_view target, CompareOptions options) {
    unsigned flags = has(options, CompareOptions::regularExpression) ? 0u : RegularExpression::literal;
    if (has(options, CompareOptions::caseInsensitive)) flags |= RegularExpression::caseInsensitive;
    return RegularExpression(target, flags);
}

}  // namespace

StringReplacementError::StringReplacementError(std::int64_t elementCount, std::int64_t replacementCount)
    : std::runtime_error("More input strings (" + std::to_string(elementCount) + ") given than replacement strings (" +
                         std::to_string(replacementCount) + ")."),
      elementCount(elementCount),
      replacementCount(replacementCount) {}

StringReplacementError StringReplacementError::tooManyElements(std::int64_t elementCount, std::int64_t replacementCount) {
    return StringReplacementError(elementCount, replacementCount);
}

std::vector<std::string> batchReplacingOccurrences(const std::vector<std::string_view>& inputs, std::string_view target,
                                                   const std::vector<std::string>& replacements,
                                                   CompareOptions options,
                                                   std::optional<RegularExpression::Range> range) {
    if (inputs.size() > replacements.size()) {
        throw StringReplacementError::tooManyElements(static_cast<std::int64_t>(inputs.size()),
                                                      static_cast<std::int64_t>(replacements.size()));
    }
    std::vector<std::string> results(inputs.begin(), inputs.end());
    // An empty target occurs nowhere (as a pattern it would match between
    // every two characters).
    if (target.empty()) return results;
    RegularExpression expression = targetExpression(target, options);
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        std::string replacement = has(options, CompareOptions::regularExpression)
                                      ? replacements[i]
                                      : RegularExpression::escapedTemplate(replacements[i]);
        RegularExpression::Range searched = range.value_or(RegularExpression::Range{0, utf16Length(inputs[i])});
        results[i] = expression.replacingMatches(inputs[i], searched.location, searched.length, replacement);
    }
    return results;
}

}  // namespace vantel
