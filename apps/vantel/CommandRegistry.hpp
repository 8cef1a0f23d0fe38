#pragma once

// Each subcommand of `vantel` lives in its own file and registers itself
// here, so adding a command touches one place.

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

namespace vantel::cli {

// The command's exit codes, documented in --help and the README.
enum class ExitCode : int { ok = 0, badDocument = 1, badUsage = 2, ioFailure = 3 };

// Adds one subcommand to the app; its callback stores the outcome in `result`.
using CommandSetup = std::function<void(CLI::App& app, ExitCode& result)>;

struct CommandRegistration {
    // `order` places the command in --help (smaller first).
    CommandRegistration(int order, CommandSetup setup);
};

// The registered commands in their order.
std::vector<CommandSetup> registeredCommands();

// The worse of two outcomes: a run that met several failures exits with the
// most serious one (I/O over bad document).
ExitCode worse(ExitCode a, ExitCode b);

}  // namespace vantel::cli
