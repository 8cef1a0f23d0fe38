#include <Platform/RegularExpression.hpp>

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace vantel {

static_assert(unsigned{RegularExpression::caseInsensitive} == unsigned{UREGEX_CASE_INSENSITIVE});
static_assert(unsigned{RegularExpression::allowCommentsAndWhitespace} == unsigned{UREGEX_COMMENTS});
static_assert(unsigned{RegularExpression::anchorsMatchLines} == unsigned{UREGEX_MULTILINE});
static_assert(unsigned{RegularExpression::literal} == unsigned{UREGEX_LITERAL});
static_assert(unsigned{RegularExpression::dotMatchesLineSeparators} == unsigned{UREGEX_DOTALL});
static_assert(unsigned{RegularExpression::useUnicodeWordBoundaries} == unsigned{UREGEX_UWORD});

// The compiled pattern is shared between copies; each search makes its own
// matcher, so one expression can be used from several threads.
struct RegularExpression::Compiled {
    std::unique_ptr<icu::RegexPattern> pattern;
};

namespace {

icu::UnicodeString unicodeText(std::string_view utf8) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
}

std::string utf8Text(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

// A matcher over `text` limited to [start, start + length), both clipped to
// the text; null when ICU cannot make one.
std::unique_ptr<icu::RegexMatcher> matcherOver(const icu::RegexPattern& pattern, const icu::UnicodeString& text,
                                               std::size_t start, std::size_t length) {
    auto size = static_cast<std::size_t>(text.length());
    std::size_t from = std::min(start, size);
    std::size_t to = from + std::min(length, size - from);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(pattern.matcher(text, status));
    if (U_SUCCESS(status)) matcher->region(static_cast<int64_t>(from), static_cast<int64_t>(to), status);
    if (U_FAILURE(status)) return nullptr;
    return matcher;
}

}  // namespace

RegularExpression::RegularExpression(std::string_view pattern, unsigned options) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError parseError{};
    std::unique_ptr<icu::RegexPattern> compiled(icu::RegexPattern::compile(unicodeText(pattern), options, parseError, status));
    if (U_FAILURE(status) || !compiled) {
        throw RegularExpressionError("the regular expression '" + std::string(pattern) + "' does not compile (" +
                                     u_errorName(status) + " at offset " + std::to_string(parseError.offset) + ")");
    }
    auto shared = std::make_shared<Compiled>();
    shared->pattern = std::move(compiled);
    compiled_ = std::move(shared);
}

std::optional<RegularExpression> RegularExpression::compile(std::string_view pattern, unsigned options) {
    try {
        return RegularExpression(pattern, options);
    } catch (const RegularExpressionError&) {
        return std::nullopt;
    }
}

std::optional<std::size_t> RegularExpression::Match::groupNumber(std::string_view name) const {
    UErrorCode status = U_ZERO_ERROR;
    int32_t number = expression_->pattern->groupNumberFromName(unicodeText(name), status);
    if (U_FAILURE(status) || number < 0) return std::nullopt;
    return static_cast<std::size_t>(number);
}

std::size_t RegularExpression::numberOfCaptureGroups() const {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(compiled_->pattern->matcher(status));
    return U_SUCCESS(status) ? static_cast<std::size_t>(matcher->groupCount()) : 0;
}

std::vector<RegularExpression::Match> RegularExpression::matches(std::string_view utf8, std::size_t start,
                                                                 std::size_t length, Bounds bounds) const {
    icu::UnicodeString text = unicodeText(utf8);
    std::unique_ptr<icu::RegexMatcher> matcher = matcherOver(*compiled_->pattern, text, start, length);
    if (!matcher) return {};
    matcher->useAnchoringBounds(bounds == Bounds::anchoring);
    std::vector<Match> found;
    UErrorCode status = U_ZERO_ERROR;
    while (matcher->find(status) && U_SUCCESS(status)) {
        Match match;
        match.expression_ = compiled_;
        for (int32_t group = 0; group <= matcher->groupCount(); ++group) {
            int32_t begin = matcher->start(group, status);
            int32_t end = matcher->end(group, status);
            if (begin < 0) {
                match.ranges_.push_back(std::nullopt);
            } else {
                match.ranges_.push_back(Range{static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)});
            }
        }
        found.push_back(std::move(match));
    }
    return found;
}

std::optional<RegularExpression::Match> RegularExpression::firstMatch(std::string_view utf8, std::size_t start,
                                                                      std::size_t length, Bounds bounds) const {
    std::vector<Match> all = matches(utf8, start, length, bounds);
    if (all.empty()) return std::nullopt;
    return all.front();
}

std::string RegularExpression::replacingMatches(std::string_view utf8, std::size_t start, std::size_t length,
                                                std::string_view replacement) const {
    icu::UnicodeString text = unicodeText(utf8);
    std::unique_ptr<icu::RegexMatcher> matcher = matcherOver(*compiled_->pattern, text, start, length);
    if (!matcher) return std::string(utf8);
    icu::UnicodeString replacementText = unicodeText(replacement);
    icu::UnicodeString result;
    UErrorCode status = U_ZERO_ERROR;
    while (matcher->find(status) && U_SUCCESS(status)) matcher->appendReplacement(result, replacementText, status);
    matcher->appendTail(result);
    // A bad group reference in the template leaves the text unchanged.
    return U_SUCCESS(status) ? utf8Text(result) : std::string(utf8);
}

std::string RegularExpression::escapedTemplate(std::string_view text) {
    std::string escaped;
    for (char c : text) {
        if (c == '\\' || c == '$') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

std::string RegularExpression::substring(std::string_view utf8, Range range) {
    return utf8Text(unicodeText(utf8).tempSubString(static_cast<int32_t>(range.location), static_cast<int32_t>(range.length)));
}

}  // namespace vantel
