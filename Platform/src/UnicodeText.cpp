#include <Platform/Graphemes.hpp>
#include <Platform/UnicodeText.hpp>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace vantel {

bool isWhiteSpaceOrNewline(char32_t codePoint) { return u_isUWhiteSpace(static_cast<UChar32>(codePoint)); }

bool isUppercase(char32_t codePoint) { return u_isUUppercase(static_cast<UChar32>(codePoint)); }

bool isUppercaseLetter(char32_t codePoint) {
    int8_t category = u_charType(static_cast<UChar32>(codePoint));
    return category == U_UPPERCASE_LETTER || category == U_TITLECASE_LETTER;
}

bool isSpaceOrTab(char32_t codePoint) { return u_isblank(static_cast<UChar32>(codePoint)); }

DecodedCodePoint decodeCodePoint(std::string_view utf8, std::size_t at) {
    auto length = static_cast<int32_t>(utf8.size());
    auto offset = static_cast<int32_t>(at);
    UChar32 value = 0;
    U8_NEXT(reinterpret_cast<const uint8_t*>(utf8.data()), offset, length, value);
    if (value < 0) value = 0xFFFD;
    return {static_cast<char32_t>(value), static_cast<std::size_t>(offset) - at};
}

bool isValidUTF8(std::string_view bytes) {
    auto length = static_cast<int32_t>(bytes.size());
    for (int32_t offset = 0; offset < length;) {
        UChar32 value = 0;
        U8_NEXT(reinterpret_cast<const uint8_t*>(bytes.data()), offset, length, value);
        if (value < 0) return false;
    }
    return true;
}

std::string_view trimmingCodePoints(std::string_view utf8, bool (*trimmed)(char32_t)) {
    std::size_t start = 0;
    while (start < utf8.size()) {
        DecodedCodePoint next = decodeCodePoint(utf8, start);
        if (!trimmed(next.value)) break;
        start += next.length;
    }
    // Scan forwards so that malformed bytes are read the same way from both
    // ends; remember where the last kept character ended.
    std::size_t end = start;
    for (std::size_t at = start; at < utf8.size();) {
        DecodedCodePoint next = decodeCodePoint(utf8, at);
        at += next.length;
        if (!trimmed(next.value)) end = at;
    }
    return utf8.substr(start, end - start);
}

std::string_view trimmingWhiteSpaceAndNewlines(std::string_view utf8) {
    return trimmingCodePoints(utf8, isWhiteSpaceOrNewline);
}

std::size_t graphemeCount(std::string_view utf8) { return graphemeClusters(utf8).size(); }

std::size_t utf16Length(std::string_view utf8) {
    std::size_t units = 0;
    for (std::size_t at = 0; at < utf8.size();) {
        DecodedCodePoint next = decodeCodePoint(utf8, at);
        units += next.value > 0xFFFF ? 2 : 1;
        at += next.length;
    }
    return units;
}

std::size_t utf8Offset(std::string_view utf8, std::size_t utf16Position) {
    std::size_t units = 0;
    std::size_t at = 0;
    while (at < utf8.size()) {
        DecodedCodePoint next = decodeCodePoint(utf8, at);
        units += next.value > 0xFFFF ? 2 : 1;
        if (units > utf16Position) break;
        at += next.length;
    }
    return at;
}

}  // namespace vantel
