#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantel {

// Unicode-aware text questions over ICU, on UTF-8 text. Malformed UTF-8
// reads as U+FFFD, one byte at a time, so nothing here throws on bad text.

// The Unicode white-space property (spaces, tabs, line and paragraph
// separators, NEL, ...).
bool isWhiteSpaceOrNewline(char32_t codePoint);

// The text without the leading and trailing code points `trimmed` accepts.
std::string_view trimmingCodePoints(std::string_view utf8, bool (*trimmed)(char32_t));

// The text without leading and trailing white space and line breaks.
std::string_view trimmingWhiteSpaceAndNewlines(std::string_view utf8);

// Whether the code point is an upper-case letter (Unicode Uppercase).
bool isUppercase(char32_t codePoint);

// Whether the code point is in the general categories Lu or Lt: letters
// written as capitals, not the wider Uppercase property (circled letters,
// Roman numerals).
bool isUppercaseLetter(char32_t codePoint);

// Space separators (Zs) and the tab: white space that does not break a line.
bool isSpaceOrTab(char32_t codePoint);

// The number of user-perceived characters (extended grapheme clusters).
std::size_t graphemeCount(std::string_view utf8);

// The number of UTF-16 code units the text takes: ICU's regular
// expressions and collators count positions in those.
std::size_t utf16Length(std::string_view utf8);

// The byte offset in the UTF-8 text of a position counted in UTF-16 units
// (as regular-expression ranges are); a position past the end gives the
// text's size, one inside a surrogate pair the start of its character.
std::size_t utf8Offset(std::string_view utf8, std::size_t utf16Position);

// Whether the bytes are well-formed UTF-8 (no surrogates, no overlong forms).
bool isValidUTF8(std::string_view bytes);

// The code point starting at utf8[at] and how many bytes it takes.
struct DecodedCodePoint {
    char32_t value;
    std::size_t length;
};
DecodedCodePoint decodeCodePoint(std::string_view utf8, std::size_t at);

}  // namespace vantel
