#pragma once

#include <string_view>
#include <vector>

namespace vantel {

// The user-perceived characters (extended grapheme clusters) of UTF-8 text,
// as views into it: "e" followed by a combining accent is one character,
// and so is a CR LF pair.
std::vector<std::string_view> graphemeClusters(std::string_view utf8);

// The last user-perceived character of the text (empty for empty text).
// Looks back from the end only, so asking after every appended character
// stays cheap on long text.
std::string_view lastGraphemeCluster(std::string_view utf8);

}  // namespace vantel
