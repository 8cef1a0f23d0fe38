#include <Platform/RegularExpression.hpp>

#include <Platform/Fatal.hpp>

#include <unicode/regex.h>
#include <unicode/unistr.h>

namespace vantel {

struct RegularExpression::Compiled {
    std::unique_ptr<icu::RegexPattern> pattern;
};

RegularExpression::RegularExpression(std::string_view pattern) : compiled_(std::make_unique<Compiled>()) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError parseError{};
    compiled_->pattern.reset(icu::RegexPattern::compile(
        icu::UnicodeString::fromUTF8(icu::StringPiece(pattern.data(), static_cast<int32_t>(pattern.size()))), 0,
        parseError, status));
    if (U_FAILURE(status) || !compiled_->pattern) {
        fatalError("invalid regular expression: " + std::string(pattern));
    }
}

RegularExpression::~RegularExpression() = default;

std::optional<std::string> RegularExpression::firstMatchGroup(std::string_view text, int group) const {
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString subject =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    std::unique_ptr<icu::RegexMatcher> matcher(compiled_->pattern->matcher(subject, status));
    if (U_FAILURE(status) || !matcher->find(status) || U_FAILURE(status)) return std::nullopt;
    if (group > matcher->groupCount() || matcher->start(group, status) < 0) return std::nullopt;
    icu::UnicodeString captured = matcher->group(group, status);
    if (U_FAILURE(status)) return std::nullopt;
    std::string utf8;
    captured.toUTF8String(utf8);
    return utf8;
}

}  // namespace vantel
