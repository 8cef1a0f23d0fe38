#pragma once

// What the command-line parser refuses, worded as the command's own usage
// errors are: one line, naming the argument as it was typed and what to do.

#include <CLI/CLI.hpp>

#include <string>
#include <string_view>

namespace vantel::cli {

// The line for `error`, without the "vantel: " in front. `app` is the whole
// command after the failed parse: it tells which subcommand was being read
// and what was left over. A refusal of a kind not known here keeps the
// parser's own text.
std::string usageErrorText(CLI::App& app, const CLI::ParseError& error);

// The text in single quotes on one line: line breaks, tabs, backslashes and
// other control characters written as escapes (\n, \t, \\, \x1b), so that a
// message quoting it stays one line.
std::string quotedOnOneLine(std::string_view text);

}  // namespace vantel::cli
