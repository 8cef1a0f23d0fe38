#pragma once

// A guide changed by typing, in the words `vantel new --guide` reads:
// "2.39:1 color=red", "grid=3x3", "weight=4 noclear". Only what the text
// names changes; text without a ratio keeps the guide's own.

#include <OverlayGenerator/AspectRatio.hpp>

#include <string>
#include <variant>

namespace vantel::editor {

// The changed guide, or the reason the text cannot be read.
std::variant<AspectRatio, std::string> guideWithExpression(const AspectRatio& guide, const std::string& text);

}  // namespace vantel::editor
