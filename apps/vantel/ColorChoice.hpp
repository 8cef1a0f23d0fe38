#pragma once

// Colours typed on the command line, as `vantel new` reads them for the
// background and for each guide.

#include <Graphics2/Color.hpp>

#include <optional>
#include <string>

namespace vantel::cli {

// The forms a colour may take, for help texts and error lines.
inline constexpr const char* colorFormsHelp =
    "#RRGGBB, #RRGGBBAA, rgb(R,G,B) or rgba(R,G,B,A) on the 0-1 scale, or a CSS colour name";

// The colour the text names, nothing for text that names none (rather than
// the black the library falls back to).
std::optional<Color> colorFromOption(const std::string& text);

}  // namespace vantel::cli
