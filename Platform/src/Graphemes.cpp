#include <Platform/Fatal.hpp>
#include <Platform/Graphemes.hpp>

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <algorithm>
#include <memory>
#include <string>

namespace vantel {
namespace {

// Plain ASCII without carriage returns is one character per byte; most
// text handed to us (hexadecimal colours, keywords) is like that, and it
// spares creating a break iterator.
bool isOneCharacterPerByte(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) {
        auto byte = static_cast<unsigned char>(c);
        return byte < 0x80 && byte != '\r';
    });
}

using TextHandle = std::unique_ptr<UText, decltype(&utext_close)>;

// This thread's character break iterator, set to the text; it reads through
// `text`, which must outlive its use. Creating an iterator loads rules, so
// each thread keeps one.
icu::BreakIterator& characterBreaks(std::string_view utf8, TextHandle& text) {
    UErrorCode status = U_ZERO_ERROR;
    thread_local std::unique_ptr<icu::BreakIterator> breaks(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) fatalError(std::string("ICU character breaks unavailable: ") + u_errorName(status));
    text.reset(utext_openUTF8(nullptr, utf8.data(), static_cast<int64_t>(utf8.size()), &status));
    breaks->setText(text.get(), status);
    if (U_FAILURE(status)) fatalError(std::string("ICU character breaks unavailable: ") + u_errorName(status));
    return *breaks;
}

std::vector<std::string_view> clustersByBreakIterator(std::string_view utf8) {
    TextHandle text(nullptr, &utext_close);
    icu::BreakIterator& breaks = characterBreaks(utf8, text);

    std::vector<std::string_view> clusters;
    int32_t start = breaks.first();
    for (int32_t end = breaks.next(); end != icu::BreakIterator::DONE; start = end, end = breaks.next()) {
        clusters.push_back(utf8.substr(static_cast<size_t>(start), static_cast<size_t>(end - start)));
    }
    return clusters;
}

// Two ASCII characters other than CR LF always have a character break
// between them: none of them extends, joins or prepends.
bool endsInPlainASCIIPair(std::string_view text) {
    if (text.size() < 2) return false;
    auto last = static_cast<unsigned char>(text.back());
    auto before = static_cast<unsigned char>(text[text.size() - 2]);
    return last < 0x80 && before < 0x80 && !(before == '\r' && last == '\n');
}

}  // namespace

std::string_view lastGraphemeCluster(std::string_view utf8) {
    if (utf8.size() <= 1) return utf8;
    if (endsInPlainASCIIPair(utf8)) return utf8.substr(utf8.size() - 1);
    TextHandle text(nullptr, &utext_close);
    int32_t start = characterBreaks(utf8, text).preceding(static_cast<int32_t>(utf8.size()));
    if (start == icu::BreakIterator::DONE) start = 0;
    return utf8.substr(static_cast<std::size_t>(start));
}

std::vector<std::string_view> graphemeClusters(std::string_view utf8) {
    if (!isOneCharacterPerByte(utf8)) return clustersByBreakIterator(utf8);
    std::vector<std::string_view> clusters;
    clusters.reserve(utf8.size());
    for (size_t i = 0; i < utf8.size(); ++i) clusters.push_back(utf8.substr(i, 1));
    return clusters;
}

}  // namespace vantel
