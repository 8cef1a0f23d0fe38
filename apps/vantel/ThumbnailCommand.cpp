// `vantel thumbnail -s SIZE INPUT OUTPUT`: the freedesktop thumbnailer. The
// picture is the library's drawFileThumbnail, the one the KDE plugin shows
// too; this host words its failures, flattens and writes the PNG.
//
// How file browsers run it shapes the output: OUTPUT often has no extension
// (always PNG); Thunar starts two runs for one output at once; tumblerd makes
// OUTPUT as an empty file and reads the PNG back through the descriptor it
// holds, so an empty OUTPUT is filled in place, under a lock, and anything
// else is replaced by a rename, all only once the picture is whole in memory.

#include "BackgroundOption.hpp"
#include "CommandRegistry.hpp"
#include "HelpFormat.hpp"
#include "DocumentLoading.hpp"
#include "RenderOutput.hpp"

#include <CoreGraphicsRendering/ImageEncoding.hpp>
#include <Platform/FileIO.hpp>
#include <Platform/URL.hpp>
#include <VantelPreview/FileThumbnail.hpp>

#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

namespace vantel::cli {

namespace {

struct ThumbnailOptions {
    int size = 256;
    std::string input;
    std::filesystem::path output;
    std::optional<std::string> background;
    std::optional<std::string> flatten;
};

// Largest SIZE accepted: far above the 1024 of the largest thumbnail flavour,
// small enough that the bitmap stays cheap.
constexpr int largestThumbnail = 4096;

// INPUT as file browsers pass it: a file URI (%u) or a path (%i); "-" reads
// standard input. A web address (or smb://, trash://, ...) names no local
// file, even when its path is the path of one: it is refused, never read as
// that path.
bool looksLikeURI(const std::string& input) {
    return input.starts_with("file:") || input.find("://") != std::string::npos;
}

std::optional<std::filesystem::path> inputFile(const std::string& input) {
    if (!looksLikeURI(input)) return std::filesystem::path(input);
    std::optional<URL> url = URL::fromString(input);
    if (!url || !url->isFileURL()) return std::nullopt;
    return url->path();
}

std::optional<DocumentSource> inputSource(const std::string& input) {
    if (input == standardStream) return DocumentSource::standardInput();
    std::optional<std::filesystem::path> file = inputFile(input);
    if (!file) return std::nullopt;
    return DocumentSource::file(*file);
}

// Links followed: a link at OUTPUT to the document would replace it too.
void refuseOverwritingInput(const ThumbnailOptions& options) {
    if (options.input == standardStream || options.output == standardStream) return;
    std::optional<std::filesystem::path> file = inputFile(options.input);
    std::error_code error;
    if (file && std::filesystem::equivalent(*file, options.output, error)) {
        throw CLI::ValidationError(options.output.string() + ": is the document being read; choose another output");
    }
}

ExitCode writeThumbnail(const Data& png, const std::filesystem::path& output) {
    try {
        if (output == standardStream) return writeToStandardOutput(png) ? ExitCode::ok : ExitCode::ioFailure;
        writeDataInPlaceOrAtomically(png, output);
    } catch (const std::filesystem::filesystem_error& error) {
        std::cerr << output.string() << ": cannot write: " << fileErrorReason(error) << '\n';
        return ExitCode::ioFailure;
    }
    return ExitCode::ok;
}

ExitCode failureExit(ThumbnailFailure failure) {
    switch (failure) {
        case ThumbnailFailure::unreadable: return ExitCode::ioFailure;
        case ThumbnailFailure::tooCostly: return ExitCode::badUsage;
        default: return ExitCode::badDocument;
    }
}

ExitCode runThumbnail(const ThumbnailOptions& options) {
    std::optional<DocumentSource> source = inputSource(options.input);
    if (!source) {
        std::cerr << options.input << ": not a file path or a local file URI\n";
        return ExitCode::badUsage;
    }
    refuseOverwritingInput(options);
    const std::optional<Color> background = chosenBackground(options.background);
    const std::optional<Color> flatten = chosenFlatten(options.flatten);
    FileThumbnail thumbnail = drawFileThumbnail(*source, options.size, background);
    if (!thumbnail.ok()) {
        for (const std::string& problem : thumbnail.problems) std::cerr << source->name() << ": " << problem << '\n';
        return failureExit(thumbnail.failure);
    }
    if (flatten) thumbnail.bitmap->context().paintBehind(flatten->red, flatten->green, flatten->blue);
    return writeThumbnail(encodePNG(thumbnail.bitmap->image()), options.output);
}

const char* const thumbnailFooter =
    "The thumbnail keeps the canvas's aspect, its longer side N pixels (default "
    "256). File browsers run it through the vantel.thumbnailer entry as "
    "\"vantel thumbnail -s %s %u %o\".\n"
    "Exit codes: 0 written, 1 the document is bad, 2 bad usage, 3 INPUT could "
    "not be read or OUTPUT written.";

CommandRegistration registration(20, [](CLI::App& app, ExitCode& result) {
    auto options = std::make_shared<ThumbnailOptions>();
    CLI::App* command = app.add_subcommand(
        "thumbnail", "Write a PNG thumbnail of a document, as file browsers ask for one");
    setUsageForms(command, {"vantel thumbnail [--size N] INPUT OUTPUT"});
    command->footer(thumbnailFooter);
    command->add_option("-s,--size", options->size, "Longer side of the thumbnail in pixels")
        ->check(CLI::Range(1, largestThumbnail))
        ->option_text("N")
        ->group("Output");
    command->add_option("INPUT", options->input, "The document: a path or a file:// URI; - reads standard input")
        ->required()
        ->option_text("INPUT")
        ->group("Input");
    command->add_option("OUTPUT", options->output, "Where the PNG goes (any name); - writes it to standard output")
        ->required()
        ->option_text("OUTPUT")
        ->group("Output");
    addBackgroundOption(*command, options->background);
    addFlattenOption(*command, options->flatten);
    command->callback([&result, options] { result = runThumbnail(*options); });
});

}  // namespace

}  // namespace vantel::cli
