#pragma once

// How `vantel --help` and every subcommand's --help read: a description, the
// usage forms, the options in groups, the footer (exit codes last), all
// wrapped to 80 columns. The manual page is made from this text at build
// time, so both say the same.

#include <CLI/CLI.hpp>

#include <initializer_list>
#include <memory>
#include <string>

namespace vantel::cli {

inline constexpr std::size_t helpWidth = 80;

// The forms a command is used in, shown first under "Usage:" instead of the
// parser's generated line. "vantel render FILE -o OUT", one per form.
void setUsageForms(const CLI::App* command, std::initializer_list<std::string> forms);

// The formatter the app and its subcommands share.
std::shared_ptr<CLI::Formatter> makeHelpFormatter();

// `text` re-flowed to `width` columns, each line indented by `indent`
// spaces; the first line is indented by `firstIndent`. Line breaks in the
// text are kept.
std::string wrappedText(const std::string& text, std::size_t indent, std::size_t firstIndent,
                        std::size_t width = helpWidth);

}  // namespace vantel::cli
