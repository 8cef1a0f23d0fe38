#pragma once

// --background COLOR, shared by render and thumbnail: any colour text
// (#RRGGBB[AA], rgb()/rgba() on the 0-1 scale, a CSS keyword) replaces the
// canvas background of every document drawn.

#include <CLI/CLI.hpp>
#include <Graphics2/Color.hpp>

#include <optional>
#include <string>

namespace vantel::cli {

void addBackgroundOption(CLI::App& command, std::string& text);

// The colour named by the option's text, nothing when it was not given.
// Text the library would turn into black or stop on is a usage error naming
// the text, raised before anything is read or written.
std::optional<Color> chosenBackground(const std::string& text);

}  // namespace vantel::cli
