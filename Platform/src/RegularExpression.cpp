#include <Platform/RegularExpression.hpp>

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace vantel {

// The compiled pattern is shared between copies; each search makes its own
// matcher, so one expression can be used from several threads.
struct RegularExpression::Compiled {
    std::unique_ptr<icu::RegexPattern> pattern;
};

std::optional<RegularExpression> RegularExpression::compile(std::string_view pattern, unsigned flags) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError parseError;
    icu::UnicodeString text = icu::UnicodeString::fromUTF8(icu::StringPiece(pattern.data(), static_cast<int32_t>(pattern.size())));
    std::unique_ptr<icu::RegexPattern> compiled(icu::RegexPattern::compile(text, flags, parseError, status));
    if (U_FAILURE(status) || !compiled) return std::nullopt;
    auto shared = std::make_shared<Compiled>();
    shared->pattern = std::move(compiled);
    return RegularExpression(std::move(shared));
}

std::size_t RegularExpression::numberOfCaptureGroups() const {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(compiled_->pattern->matcher(status));
    return U_SUCCESS(status) ? static_cast<std::size_t>(matcher->groupCount()) : 0;
}

std::vector<RegularExpression::Match> RegularExpression::matches(std::string_view utf8, std::size_t start,
                                                                 std::size_t length) const {
    icu::UnicodeString text = icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
    auto size = static_cast<std::size_t>(text.length());
    std::size_t from = std::min(start, size);
    std::size_t to = std::min(size, from + std::min(length, size));
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(compiled_->pattern->matcher(text, status));
    if (U_FAILURE(status)) return {};
    matcher->region(static_cast<int64_t>(from), static_cast<int64_t>(to), status);
    std::vector<Match> found;
    while (U_SUCCESS(status) && matcher->find(status) && U_SUCCESS(status)) {
        Match match;
        for (int32_t group = 0; group <= matcher->groupCount(); ++group) {
            int32_t begin = matcher->start(group, status);
            int32_t end = matcher->end(group, status);
            if (begin < 0) {
                match.push_back(std::nullopt);
            } else {
                match.push_back(Range{static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)});
            }
        }
        found.push_back(std::move(match));
    }
    return found;
}

std::optional<RegularExpression::Match> RegularExpression::firstMatch(std::string_view utf8, std::size_t start,
                                                                      std::size_t length) const {
    std::vector<Match> all = matches(utf8, start, length);
    if (all.empty()) return std::nullopt;
    return all.front();
}

std::string RegularExpression::substring(std::string_view utf8, Range range) {
    icu::UnicodeString text = icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
    std::string result;
    text.tempSubString(static_cast<int32_t>(range.location), static_cast<int32_t>(range.length)).toUTF8String(result);
    return result;
}

}  // namespace vantel
