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

std::vector<std::string_view> clustersByBreakIterator(std::string_view utf8) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UText, decltype(&utext_close)> text(
        utext_openUTF8(nullptr, utf8.data(), static_cast<int64_t>(utf8.size()), &status),
        &utext_close);
    std::unique_ptr<icu::BreakIterator> breaks(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) fatalError(std::string("ICU character breaks unavailable: ") + u_errorName(status));
    breaks->setText(text.get(), status);
    if (U_FAILURE(status)) fatalError(std::string("ICU character breaks unavailable: ") + u_errorName(status));

    std::vector<std::string_view> clusters;
    int32_t start = breaks->first();
    for (int32_t end = breaks->next(); end != icu::BreakIterator::DONE; start = end, end = breaks->next()) {
        clusters.push_back(utf8.substr(static_cast<size_t>(start), static_cast<size_t>(end - start)));
    }
    return clusters;
}

}  // namespace

std::vector<std::string_view> graphemeClusters(std::string_view utf8) {
    if (!isOneCharacterPerByte(utf8)) return clustersByBreakIterator(utf8);
    std::vector<std::string_view> clusters;
    clusters.reserve(utf8.size());
    for (size_t i = 0; i < utf8.size(); ++i) clusters.push_back(utf8.substr(i, 1));
    return clusters;
}

}  // namespace vantel
