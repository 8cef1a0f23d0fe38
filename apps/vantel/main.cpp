#include "CommandRegistry.hpp"
#include "HelpFormat.hpp"
#include "UsageErrors.hpp"

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

// Each paragraph after the first is a list the manual page turns into a
// section of its own (scripts/help-to-man.py): keep "Heading:" and the
// two-space "NAME  meaning" lines.
const char* const commandFooter =
    "Run \"vantel COMMAND --help\" for a command's options. Documents are XML or "
    "binary property lists (*.aspectratio) holding a canvas, its background "
    "colour and nested aspect-ratio guides; the vantel-aspectratio(5) manual "
    "page (docs/format.md in Vantel's sources) describes every key, and "
    "\"vantel new\" writes one to start from.\n"
    "\n"
    "Environment:\n"
    "  SOURCE_DATE_EPOCH  the creation date written into PDF files, in seconds "
    "since 1970; without it PDF files carry no date, so that every run writes "
    "the same bytes. When set, framing decision lists get a uuid derived from "
    "their content instead of a random one\n"
    "  TMPDIR  where a document downloaded from an http(s) address is kept "
    "until it has been read (default /tmp)\n"
    "  http_proxy, https_proxy, no_proxy  the proxies for http(s) addresses, "
    "read as curl reads them\n"
    "\n"
    "Files:\n"
    "  .OUT.<uuid>  the temporary file beside OUT that render writes first and "
    "renames to OUT once it is whole\n"
    "  $TMPDIR/vantel-download-<uuid>  a downloaded document, removed once read\n"
    "  share/thumbnailers/vantel.thumbnailer  under the installation prefix: "
    "the entry through which file browsers run vantel thumbnail\n"
    "  share/mime/packages/vantel.xml  under the installation prefix: the "
    "MIME type of *.aspectratio documents\n"
    "\n"
    "Exit codes (the most serious one wins when several documents fail):\n"
    "  0  success\n"
    "  1  a document is bad: not an overlay document, or one that cannot be drawn\n"
    "  2  bad usage: an unknown option, command or format, a missing argument, "
    "outputs that would clash\n"
    "  3  an input or output file could not be read or written, or a web "
    "address could not be downloaded";

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
    app.footer(commandFooter);
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
        std::cerr << "vantel: " << usageErrorText(app, error) << "\n";
        return static_cast<int>(ExitCode::badUsage);
    }
    if (app.get_subcommands().empty()) std::cout << app.help();
    return static_cast<int>(result);
}
