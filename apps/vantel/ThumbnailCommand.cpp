// `vantel thumbnail -s SIZE INPUT OUTPUT`: the freedesktop thumbnailer. It
// plays the preview host: reads and checks the document, asks the preview
// provider for the reply, supplies a bitmap of SIZE x SIZE at most, runs the
// reply's drawing and writes the PNG.
//
// How file browsers run it shapes the output: OUTPUT often has no extension
// (always PNG); Thunar starts two runs for one output at once; tumblerd reads
// the PNG through a descriptor it opened before the run, so OUTPUT is written
// in place, under a lock, and only once the picture is whole in memory.

#include "BackgroundOption.hpp"
#include "CommandRegistry.hpp"
#include "HelpFormat.hpp"
#include "DocumentLoading.hpp"
#include "FDLDrawing.hpp"

#include <Platform/FileIO.hpp>
#include <Platform/URL.hpp>
#include <VantelPreview/PreviewProvider.hpp>
#include <VantelPreview/Thumbnail.hpp>

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
    std::string background;
};

// Largest SIZE accepted: far above the 1024 of the largest thumbnail flavour,
// small enough that the bitmap stays cheap.
constexpr int largestThumbnail = 4096;

// INPUT as file browsers pass it: a file URI (%u) or a path (%i). Other
// schemes have no local file to read.
std::optional<std::filesystem::path> inputPath(const std::string& input) {
    bool isURI = input.starts_with("file:") || input.find("://") != std::string::npos;
    if (!isURI) return std::filesystem::path(input);
    std::optional<URL> url = URL::fromString(input);
    if (!url || !url->isFileURL()) return std::nullopt;
    return url->path();
}

// The thumbnail as PNG data, or the line saying why there is none. The
// provider answers for the document this command read and checked, not for
// a second read of the file, which may have changed since.
std::optional<Data> drawDocument(const std::filesystem::path& file, std::shared_ptr<const OverlayGen> document,
                                 int size, std::string& failure) {
    try {
        QLPreviewReply reply = PreviewProvider::previewReply(std::move(document));
        return thumbnailPNG(reply, size);
    } catch (const std::exception& error) {
        failure = file.string() + ": cannot draw: " + error.what();
    }
    return std::nullopt;
}

ExitCode runThumbnail(const ThumbnailOptions& options) {
    std::optional<std::filesystem::path> file = inputPath(options.input);
    if (!file) {
        std::cerr << options.input << ": not a file path or a local file URI\n";
        return ExitCode::badUsage;
    }
    const std::optional<Color> background = chosenBackground(options.background);
    if (auto drawn = thumbnailFramingDecisionList(*file, options.size, background, options.output)) return *drawn;
    // Checked first, so that a document the libraries would refuse to draw
    // never reaches them.
    CommandDocument loaded = readDocument(DocumentSource::file(*file), true, background);
    if (!loaded.ok()) {
        reportProblems(loaded.problems);
        return loaded.failure;
    }
    std::string failure;
    std::optional<Data> png = drawDocument(*file, std::move(loaded.document), options.size, failure);
    if (!png) {
        std::cerr << failure << '\n';
        return ExitCode::badDocument;
    }
    try {
        writeDataInPlaceLocked(*png, options.output);
    } catch (const std::filesystem::filesystem_error& error) {
        std::cerr << options.output.string() << ": cannot write: " << fileErrorReason(error) << '\n';
        return ExitCode::ioFailure;
    }
    return ExitCode::ok;
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
    command->add_option("INPUT", options->input, "The document: a path or a file:// URI")
        ->required()
        ->option_text("INPUT")
        ->group("Input");
    command->add_option("OUTPUT", options->output, "Where the PNG goes (any name; written in place)")
        ->required()
        ->option_text("OUTPUT")
        ->group("Output");
    addBackgroundOption(*command, options->background);
    command->callback([&result, options] { result = runThumbnail(*options); });
});

}  // namespace

}  // namespace vantel::cli
