#pragma once

// The colour options shared by render and thumbnail, in CSS syntax
// (CSSColor.hpp):
//   --background COLOR replaces the canvas background of every document;
//   --flatten [COLOR] lays the finished picture onto an opaque colour (white
//   when none is given), so that no pixel stays transparent, not even where
//   a guide clears what lies beneath it.

#include <CLI/CLI.hpp>
#include <Graphics2/Color.hpp>

#include <optional>
#include <string>

namespace vantel::cli {

void addBackgroundOption(CLI::App& command, std::optional<std::string>& text);
void addFlattenOption(CLI::App& command, std::optional<std::string>& text);

// The colour named by the option's text, nothing when it was not given.
// Text that is not a colour is a usage error quoting the text, raised before
// anything is read or written.
std::optional<Color> chosenBackground(const std::optional<std::string>& text);
// As chosenBackground; a colour that is not opaque is refused too.
std::optional<Color> chosenFlatten(const std::optional<std::string>& text);

}  // namespace vantel::cli
