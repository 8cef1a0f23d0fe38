#include "CommandRegistry.hpp"
#include "HelpFormat.hpp"

#include <CoreGraphicsRendering/DrawingLibraries.hpp>
#include <Platform/TemporaryFiles.hpp>

#include <algorithm>
#include <csignal>
#include <iostream>
#include <map>

namespace vantel::cli {

namespace {

std::multimap<int, CommandSetup>& registry() {
    static std::multimap<int, CommandSetup> commands;
    return commands;
}

const char* const exitCodeHelp =
    "Run \"vantel COMMAND --help\" for a command's options.\n"
    "Exit codes: 0 success, 1 a document is bad (cannot be read as an overlay or\n"
    "cannot be drawn), 2 bad usage, 3 an input or output file could not be read\n"
    "or written.";

// "vantel 0.1.0" and a line per library, for bug reports.
std::string versionText() {
    std::string text = std::string("vantel ") + VANTEL_VERSION + "\n";
    std::vector<vantel::LibraryVersion> libraries = vantel::drawingLibraryVersions();
    for (auto& library : vantel::platformLibraryVersions()) libraries.push_back(std::move(library));
    for (const auto& library : libraries) text += "  " + library.name + " " + library.version + "\n";
    text.pop_back();  // CLI11 ends the text with its own newline
    return text;
}

}  // namespace

CommandRegistration::CommandRegistration(int order, CommandSetup setup) {
    registry().emplace(order, std::move(setup));
}

std::vector<CommandSetup> registeredCommands() {
    std::vector<CommandSetup> commands;
    for (const auto& entry : registry()) commands.push_back(entry.second);
    return commands;
}

ExitCode worse(ExitCode a, ExitCode b) {
    auto rank = [](ExitCode code) {
        switch (code) {
            case ExitCode::ok: return 0;
            case ExitCode::badDocument: return 1;
            case ExitCode::ioFailure: return 2;
            case ExitCode::badUsage: return 3;
        }
        return 0;
    };
    return rank(a) >= rank(b) ? a : b;
}

}  // namespace vantel::cli

int main(int argc, char** argv) {
    using namespace vantel::cli;
    // A reader that closes the pipe early (`vantel render ... -o - | head`)
    // ends the write with an error the command handles, not a signal.
    std::signal(SIGPIPE, SIG_IGN);
    // Past a file-size limit (ulimit -f) a write then fails with EFBIG, which
    // the command reports like any other write error, its temporary file
    // removed, instead of being killed with the file left behind.
    std::signal(SIGXFSZ, SIG_IGN);
    // Ctrl+C and SIGTERM remove the temporary files of outputs and downloads
    // under way, on every thread.
    vantel::installSignalCleanup();
    CLI::App app{"vantel: preview, render and check overlay documents"};
    app.formatter(makeHelpFormatter());
    app.set_version_flag("--version", versionText, "Print the version of vantel and its libraries");
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.footer(exitCodeHelp);
    setUsageForms(&app, {"vantel COMMAND [OPTIONS] FILE...", "vantel --version"});
    app.require_subcommand(0, 1);
    ExitCode result = ExitCode::ok;
    for (const auto& setup : registeredCommands()) setup(app, result);
    for (CLI::App* command : app.get_subcommands({})) command->group("Commands");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return app.exit(error);  // --help, --version
        // One line, as for every other failure; --help is where the rest is.
        std::cerr << "vantel: " << error.what() << "\n";
        return static_cast<int>(ExitCode::badUsage);
    }
    if (app.get_subcommands().empty()) std::cout << app.help();
    return static_cast<int>(result);
}
