// vantel new [--preset NAME | --guide EXPR...] [--canvas WxH] [--margin N]
//            [--background COLOR] [--binary] [--force] -o FILE

#include "BackgroundOption.hpp"
#include "CommandRegistry.hpp"
#include "DocumentLoading.hpp"
#include "GuideExpression.hpp"
#include "HelpFormat.hpp"
#include "NewDocument.hpp"
#include "RenderOutput.hpp"
#include "UsageErrors.hpp"

#include <OverlayGenerator/DocumentCheck.hpp>
#include <Platform/FileIO.hpp>

#include <filesystem>
#include <memory>

namespace vantel::cli {

namespace {

struct NewOptions {
    std::string preset = "default";
    std::vector<std::string> guides;
    std::string canvas = "1920x1080";
    int margin = 40;
    std::optional<std::string> background;
    bool binary = false;
    bool force = false;
    std::string output;
};

int canvasSide(const std::string& text, std::size_t from, std::size_t to) {
    const std::string digits = text.substr(from, to - from);
    if (digits.empty() || digits.size() > 5 || digits.find_first_not_of("0123456789") != std::string::npos ||
        std::stoi(digits) == 0) {
        throw CLI::ValidationError("--canvas " + quotedOnOneLine(text) +
                                   ": give WIDTHxHEIGHT in whole pixels, such as 3840x2160");
    }
    return std::stoi(digits);
}

Size canvasSize(const std::string& text, int margin) {
    const std::size_t cross = text.find('x');
    const int width = canvasSide(text, 0, cross);
    return Size(width, canvasSide(text, cross + 1, text.size()), margin);
}

std::vector<AspectRatio> chosenGuides(const NewOptions& options) {
    if (options.guides.empty()) return presetGuides(presetNamed(options.preset).value());  // checked by the option
    std::vector<GuideExpression> expressions;
    for (const std::string& text : options.guides) expressions.push_back(parseGuideExpression(text, expressions.size()));
    return nestedGuides(expressions);
}

// Options can combine into a document nothing can draw (a margin wider than
// the canvas, a grid finer than a pixel); that is refused like bad options.
OverlayGen checkedDocument(const NewOptions& options) {
    OverlayGen document(canvasSize(options.canvas, options.margin), chosenBackground(options.background).value_or(Color::black()),
                        chosenGuides(options));
    const std::vector<DocumentProblem> problems = checkDocument(document);
    if (!problems.empty()) throw CLI::ValidationError("the document could not be drawn: " + problems.front().text());
    return document;
}

ExitCode writeDocument(const Data& bytes, const std::string& output) {
    try {
        if (output == standardStream) return writeToStandardOutput(bytes) ? ExitCode::ok : ExitCode::ioFailure;
        writeDataAtomically(bytes, std::filesystem::path(output));
    } catch (const std::filesystem::filesystem_error& failure) {
        reportProblems({output + ": cannot write: " + fileErrorReason(failure)});
        return ExitCode::ioFailure;
    }
    return ExitCode::ok;
}

ExitCode runNew(const NewOptions& options) {
    std::error_code error;
    if (!options.force && options.output != standardStream && std::filesystem::exists(options.output, error)) {
        throw CLI::ValidationError(options.output + ": already exists; give --force to replace it");
    }
    return writeDocument(encodeNewDocument(checkedDocument(options), options.binary), options.output);
}

const char* const newFooter =
    "Unless told otherwise the canvas is 1920 x 1080 with a margin of 40 and a\n"
    "black background. Presets: default, one 1:1 guide of weight 10; test, a\n"
    "16:9 guide holding a 4:3 guide and a 9:16 guide divided in thirds; cinema,\n"
    "1.85:1 and 2.39:1 inside 16:9; social, 9:16, 4:5 and 1:1 inside 16:9; safe,\n"
    "16:9 with a 20 x 20 grid whose outermost lines bound the 90 % title area (a\n"
    "guide cannot be a share of its parent, so the 93 % action area has no line).\n"
    "A guide is RATIO [KEY=VALUE | clear | noclear]..., RATIO as 16:9, 2.39:1 or\n"
    "2.39; keys: color= and fill= (a CSS colour), weight= (the stroke width, default\n"
    "2), grid=RxC (R rows and C columns of equal parts), grid-px=N (a line every\n"
    "N pixels), in=N (nest inside the N-th guide given, which comes earlier).\n"
    "clear (the default) erases what lies beneath the guide before it is drawn.\n"
    "Guides without color= take colours at random from the preset palette.\n"
    "Every key of a document is described in the vantel-aspectratio(5) manual page\n"
    "(docs/format.md in Vantel's sources).\n"
    "Exit codes: 0 written, 2 bad usage (also: FILE exists without --force, a\n"
    "bad guide, a document that could not be drawn), 3 FILE could not be written.";

void addDocumentOptions(CLI::App* sub, NewOptions& options) {
    CLI::Option* preset =
        sub->add_option("-p,--preset", options.preset,
                        "the guides: default, test, cinema, social or safe (default: default)")
            ->check(CLI::IsMember(presetNames()))
            ->option_text("NAME")
            ->group("Document");
    sub->add_option("-g,--guide", options.guides, "a guide, such as '2.39:1 color=#ff3b30 weight=4'; repeat for more")
        ->option_text("EXPR")
        ->excludes(preset)
        ->group("Document");
    sub->add_option("--canvas", options.canvas, "the canvas size in pixels (default: 1920x1080)")
        ->option_text("WxH")
        ->group("Document");
    sub->add_option("--margin", options.margin, "the space kept free around the guides (default: 40)")
        ->check(CLI::Range(0, 32767))
        ->option_text("N")
        ->group("Document");
    sub->add_option("--background", options.background, "the canvas colour, a CSS colour such as navy, #121218 or rgb(18,18,24) (default: black)")
        ->option_text("COLOR")
        ->group("Document");
}

CommandRegistration registration(50, [](CLI::App& app, ExitCode& result) {
    auto options = std::make_shared<NewOptions>();
    CLI::App* sub = app.add_subcommand("new", "Write a new overlay document from a preset or from guides");
    setUsageForms(sub, {"vantel new [--preset NAME] [OPTIONS] -o FILE",
                        "vantel new --guide EXPR [--guide EXPR...] [OPTIONS] -o FILE"});
    sub->footer(newFooter);
    sub->add_option("-o,--output", options->output, "the document to write (.aspectratio); - writes it to standard output")
        ->required()
        ->option_text("FILE")
        ->group("Output");
    addDocumentOptions(sub, *options);
    sub->add_flag("--binary", options->binary, "write a binary property list instead of XML")->group("Output");
    sub->add_flag("--force", options->force, "replace FILE if it exists")->group("Output");
    sub->callback([options, &result] { result = runNew(*options); });
});

}  // namespace

}  // namespace vantel::cli
