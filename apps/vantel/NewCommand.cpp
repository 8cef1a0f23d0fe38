// vantel new [--preset default|test] [--binary] [--force] -o FILE

#include "CommandRegistry.hpp"
#include "HelpFormat.hpp"
#include "DocumentLoading.hpp"
#include "NewDocument.hpp"
#include "RenderOutput.hpp"

#include <Platform/FileIO.hpp>

#include <filesystem>
#include <memory>

namespace vantel::cli {

namespace {

struct NewOptions {
    std::string preset = "default";
    bool binary = false;
    bool force = false;
    std::string output;
};

ExitCode runNew(const NewOptions& options) {
    const Preset preset = presetNamed(options.preset).value();  // the option accepts only known names
    std::error_code error;
    bool toStandardOutput = options.output == standardStream;
    if (!options.force && !toStandardOutput && std::filesystem::exists(options.output, error)) {
        throw CLI::ValidationError(options.output + ": already exists; give --force to replace it");
    }
    Data bytes = encodeNewDocument(newDocument(preset), options.binary);
    try {
        if (toStandardOutput) return writeToStandardOutput(bytes) ? ExitCode::ok : ExitCode::ioFailure;
        writeDataAtomically(bytes, std::filesystem::path(options.output));
    } catch (const std::filesystem::filesystem_error& failure) {
        reportProblems({options.output + ": cannot write: " + fileErrorReason(failure)});
        return ExitCode::ioFailure;
    }
    return ExitCode::ok;
}

const char* const newFooter =
    "The canvas is 1920 x 1080 with a margin of 40 and a black background.\n"
    "Presets: default, one 1:1 guide of weight 10; test, a 16:9 guide holding a\n"
    "4:3 guide and a 9:16 guide divided in thirds. Guide colours are picked at\n"
    "random from the preset palette.\n"
    "Exit codes: 0 written, 2 bad usage (also: FILE exists without --force),\n"
    "3 FILE could not be written.";

CommandRegistration registration(50, [](CLI::App& app, ExitCode& result) {
    auto options = std::make_shared<NewOptions>();
    CLI::App* sub = app.add_subcommand("new", "Write a new overlay document from a preset");
    setUsageForms(sub, {"vantel new [--preset default|test] [--binary] [--force] -o FILE"});
    sub->footer(newFooter);
    sub->add_option("-o,--output", options->output, "the document to write (.aspectratio); - writes it to standard output")
        ->required()
        ->option_text("FILE")
        ->group("Output");
    sub->add_option("-p,--preset", options->preset, "the guides: default or test (default: default)")
        ->check(CLI::IsMember({"default", "test"}))
        ->option_text("NAME")
        ->group("Document");
    sub->add_flag("--binary", options->binary, "write a binary property list instead of XML")->group("Output");
    sub->add_flag("--force", options->force, "replace FILE if it exists")->group("Output");
    sub->callback([options, &result] { result = runNew(*options); });
});

}  // namespace

}  // namespace vantel::cli
