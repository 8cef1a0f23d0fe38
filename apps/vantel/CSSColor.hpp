#pragma once

// Colours given on the command line, in CSS syntax as rsvg-convert -b
// takes them. This is the command's rule, not the
// library's: colour text inside documents keeps the library's literal forms
// (rgb() on the 0-1 scale, case-sensitive keywords), while people typing a
// colour expect what every other tool reads from the same text.

#include <Graphics2/Color.hpp>

#include <optional>
#include <string_view>

namespace vantel::cli {

// Accepted, with blanks around the text ignored:
//   keywords in any case, and transparent;
//   #rgb, #rgba, #rrggbb, #rrggbbaa;
//   rgb()/rgba() with 0-255 numbers or percentages and an alpha of 0-1 or a
//   percentage, comma-separated or as "rgb(R G B / A)";
//   hsl()/hsla() with a hue in degrees (or deg, rad, grad, turn) and
//   percentages, in the same two layouts.
// Values out of range are clamped, as CSS does. Anything else: nothing.
std::optional<Color> cssColor(std::string_view text);

}  // namespace vantel::cli
