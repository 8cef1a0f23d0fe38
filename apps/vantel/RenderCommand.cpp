// vantel render FILE -o OUT [--format F]
// vantel render FILE... --out-dir DIR [--format F] [--jobs N]

#include "BackgroundOption.hpp"
#include "BatchProgress.hpp"
#include "CommandRegistry.hpp"
#include "DocumentLoading.hpp"
#include "HelpFormat.hpp"
#include "OutputFormat.hpp"
#include "RenderOutput.hpp"

#include <ZBExtensions/Strings.hpp>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <system_error>
#include <thread>

namespace vantel::cli {

namespace {

namespace fs = std::filesystem;

struct RenderOptions {
    std::vector<std::string> inputs;
    std::string output;
    std::string outDir;
    std::string format;
    unsigned jobs = 0;  // 0: one per core
    SizeRequest size;
    std::optional<std::string> background;
    std::optional<std::string> flatten;
    FrameLineOptions frameLines;
};

struct RenderJob {
    fs::path input;
    fs::path output;
};

OutputFormat chosenFormat(const RenderOptions& options) {
    if (!options.format.empty()) {
        if (auto format = OutputFormat::named(options.format)) return *format;
        throw CLI::ValidationError("--format", "unknown format '" + options.format +
                                                   "'; choose one of " + OutputFormat::namesText());
    }
    if (options.output.empty() || options.output == standardStream) return *OutputFormat::named("png");
    if (auto format = OutputFormat::forFile(options.output)) return *format;
    throw CLI::ValidationError("-o", "cannot tell the format from '" + options.output +
                                         "'; end the name in one of " + OutputFormat::namesText() +
                                         " or give --format");
}

void checkOutputNaming(const RenderOptions& options) {
    if (options.output.empty() && options.outDir.empty()) {
        throw CLI::ValidationError("name the output with -o FILE, or a folder for several with --out-dir DIR");
    }
}

// Several documents go to one file, standard output too, only as the pages
// of a PDF.
void checkOneOutputForMany(const RenderOptions& options, const OutputFormat& format) {
    if (std::count(options.inputs.begin(), options.inputs.end(), standardStream.string()) > 1) {
        throw CLI::ValidationError("FILE", "- (standard input) can be given once");
    }
    if (options.output == standardStream && options.inputs.size() > 1 && !format.holdsPages()) {
        throw CLI::ValidationError("-o", "- writes one " + format.extension +
                                             " to standard output; give one FILE, or --format pdf for a page each");
    }
    if (!options.output.empty() && options.inputs.size() > 1 && !format.holdsPages()) {
        throw CLI::ValidationError("-o", "names one " + format.extension +
                                             " for one document; use --out-dir DIR for several, or a .pdf "
                                             "for a page each");
    }
}

// Vector outputs keep their own transparency rules: a PDF page is opaque
// white already, and an SVG picture is laid onto whatever shows it.
void checkFlattenFits(const RenderOptions& options, const OutputFormat& format) {
    if (options.flatten && !std::holds_alternative<BitmapOutput>(format.kind)) {
        throw CLI::ValidationError("--flatten", "applies to bitmap formats, not to " + format.extension);
    }
}

// A framing decision list holds geometry only: a colour asked for there
// would be dropped without a word, so it is refused instead.
void checkBackgroundFits(const RenderOptions& options, const OutputFormat& format) {
    if (options.background && std::holds_alternative<FDLOutput>(format.kind)) {
        throw CLI::ValidationError("--background",
                                   "has nothing to colour in an .fdl: a framing decision list has no background");
    }
}

// A document must never be replaced by its own rendering.
void refuseOverwritingInput(const RenderJob& job) {
    if (job.output == standardStream) return;
    std::error_code error;
    if (fs::equivalent(job.input, job.output, error)) {
        throw CLI::ValidationError(job.output.string() + ": is the document being rendered; choose another output");
    }
}

std::vector<RenderJob> plannedJobs(const RenderOptions& options, const OutputFormat& format) {
    std::vector<RenderJob> jobs;
    if (!options.output.empty()) {
        jobs.push_back({options.inputs.front(), options.output});
    } else {
        std::map<fs::path, fs::path> writers;  // output -> input
        for (const std::string& input : options.inputs) {
            fs::path output = fs::path(options.outDir) / outputStem(input);
            output += "." + format.extension;
            auto [entry, added] = writers.emplace(output.lexically_normal(), input);
            if (!added) {
                throw CLI::ValidationError(entry->second.string() + " and " + input + " would both be written to " +
                                           output.string());
            }
            jobs.push_back({input, output});
        }
    }
    for (const RenderJob& job : jobs) refuseOverwritingInput(job);
    return jobs;
}

unsigned threadCount(const RenderOptions& options, std::size_t jobs) {
    unsigned wanted = options.jobs > 0 ? options.jobs : std::max(1u, std::thread::hardware_concurrency());
    return static_cast<unsigned>(std::min<std::size_t>(wanted, std::max<std::size_t>(jobs, 1)));
}

// Renders every job on up to `threads` workers taking the next job in turn.
// Each document is read, laid out and drawn on the worker that took it; the
// bitmaps in flight share one memory budget, so large pictures take turns.
ExitCode renderAll(const std::vector<RenderJob>& jobs, DrawingChoices choices, const OutputFormat& format,
                   unsigned threads, BatchProgress& progress) {
    MemoryBudget memory(MemoryBudget::forThisMachine(maxEncodingMemory));
    choices.memory = &memory;
    std::atomic<std::size_t> next{0};
    std::vector<ExitCode> codes(jobs.size(), ExitCode::ok);
    auto work = [&] {
        for (std::size_t i = next++; i < jobs.size(); i = next++) {
            RenderOutcome outcome = renderFile(jobs[i].input, jobs[i].output, format, choices);
            codes[i] = outcome.code;
            if (outcome.ok()) {
                progress.succeeded(i);
            } else {
                progress.failed(i, outcome.problems);
            }
        }
    };
    std::vector<std::thread> workers;
    try {
        for (unsigned i = 1; i < threads; ++i) workers.emplace_back(work);
    } catch (const std::system_error&) {
        // Fewer threads than asked for: the ones running share the work.
    }
    work();
    for (std::thread& worker : workers) worker.join();
    ExitCode result = ExitCode::ok;
    for (ExitCode code : codes) result = worse(result, code);
    return result;
}

ExitCode makeFolder(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        reportProblems({folder + ": cannot create the folder: " + error.message()});
        return ExitCode::ioFailure;
    }
    return ExitCode::ok;
}

ExitCode renderPages(const RenderOptions& options, const DrawingChoices& choices) {
    std::vector<fs::path> inputs(options.inputs.begin(), options.inputs.end());
    for (const fs::path& input : inputs) refuseOverwritingInput({input, options.output});
    RenderOutcome outcome = renderPDFPages(inputs, options.output, choices);
    reportProblems(outcome.problems);
    return outcome.code;
}

// Batches are rendered and reported in natural order of their names (shot2
// before shot10), whatever order the shell expanded them in. The pages of
// one PDF keep the order given: that order is the book the person is making
// (a cover first, then the rest).
RenderOptions inNaturalOrder(RenderOptions options) {
    std::stable_sort(options.inputs.begin(), options.inputs.end(), NaturalOrder{});
    return options;
}

ExitCode runRender(const RenderOptions& options) {
    checkOutputNaming(options);
    checkSizeRequest(options.size);
    const DrawingChoices choices{options.size, chosenBackground(options.background), chosenFlatten(options.flatten),
                                 nullptr, options.frameLines};
    const OutputFormat format = chosenFormat(options);
    checkOneOutputForMany(options, format);
    checkFlattenFits(options, format);
    checkBackgroundFits(options, format);
    if (!options.output.empty() && options.inputs.size() > 1) return renderPages(options, choices);
    const std::vector<RenderJob> jobs = plannedJobs(inNaturalOrder(options), format);
    if (!options.output.empty()) {
        RenderOutcome outcome = renderFile(jobs.front().input, jobs.front().output, format, choices);
        reportProblems(outcome.problems);
        return outcome.code;
    }
    if (ExitCode made = makeFolder(options.outDir); made != ExitCode::ok) return made;
    BatchProgress progress(jobs.size(), BatchProgress::standardErrorIsTerminal(), std::cout, std::cerr);
    ExitCode result = renderAll(jobs, choices, format, threadCount(options, jobs.size()), progress);
    progress.finish();
    return result;
}

const char* const renderFooter =
    "Each document is checked first; a document that cannot be drawn is refused "
    "with one line per problem. Outputs are written to a temporary file beside "
    "the target and renamed into place, so a failed render leaves an earlier "
    "file untouched. With --out-dir, each output is DIR/<name of FILE without "
    "its extension>.<format>; documents render in parallel, one line is printed "
    "per failed file and a summary at the end. Documents are taken in natural "
    "order of their names, numbers by value (shot2 before shot10), whatever "
    "order they were given in, and errors are reported in that order. With "
    "several documents and one PDF output (a .pdf file, or - with --format "
    "pdf), each document is a page of it, in the order given.\n"
    "Colours: --background and --flatten take CSS colours, as rsvg-convert -b "
    "does: names in any case, #rgb, #rgba, #rrggbb, "
    "#rrggbbaa, rgb() and rgba() with 0-255 numbers or percentages (alpha 0-1 "
    "or a percentage), hsl() and hsla(), and transparent. Every form vantel "
    "info --colors writes is one of them.\n"
    "Sizes: by default the output has the canvas's size. With --width or "
    "--height alone the other side follows the canvas's aspect; with both the "
    "picture is fitted inside W x H, or fills it with --stretch. The drawing is "
    "scaled as a whole: bitmaps get that many pixels, PDF pages that many "
    "points, SVG pictures that many pixels, still vector; every format of one "
    "command gets the same whole-number size. A bitmap past 32767 px a side, "
    "past the memory one picture may hold, or whose guides and grid lines "
    "would take too long to draw at that size, is refused as bad usage (exit "
    "2) with the numbers and the limit; PDF and SVG are not. With --jobs, "
    "large pictures take turns so that those in flight fit in memory.\n"
    "SVG output draws the same picture as the bitmaps, as paths only: colours "
    "with their alpha, stroke weights, and the holes of guides that clear what "
    "lies beneath (as masks).\n"
    "FDL output (.fdl) writes an overlay as an ASC framing decision list, "
    "version 2.0: one canvas of the output's size, and for each guide a "
    "framing intent of its ratio in whole numbers (239:100 for 2.39:1) and a "
    "framing decision at its laid-out rectangle, labelled by its place among "
    "the guides (1.2: the second guide inside the first). Its uuid is random, "
    "or derived from the content when SOURCE_DATE_EPOCH is set, so that the "
    "bytes repeat. A list has no background, so --background is refused "
    "with it.\n"
    "Exit codes: 0 every file rendered, 1 a document is bad, 2 bad usage, "
    "3 an input or output file could not be read or written (the most serious "
    "one when several files failed).";

void addOutputOptions(CLI::App& command, RenderOptions& options) {
    auto* output = command.add_option("-o,--output", options.output, "the output file: one document, or a PDF of several")
                       ->option_text("FILE")
                       ->group("Output");
    auto* outDir = command.add_option("--out-dir", options.outDir, "the folder to write outputs into (made if missing)")
                       ->option_text("DIR")
                       ->group("Output");
    output->excludes(outDir);
    command.add_option("-f,--format", options.format,
                       "the output format: " + OutputFormat::namesText() +
                           " (default: from the -o name; png with --out-dir)")
        ->option_text("FORMAT")
        ->group("Output");
}

// A side or zoom is only set when given, so that 0 is refused, not ignored.
void addSizeOptions(CLI::App& command, RenderOptions& options) {
    auto optional = [&command](const char* names, std::optional<double>& value, const char* text, const char* unit) {
        command.add_option_function<double>(names, [&value](double given) { value = given; }, text)
            ->option_text(unit)
            ->group("Size");
    };
    optional("-w,--width", options.size.width, "the output's width (pixels; points for PDF)", "W");
    optional("--height", options.size.height, "the output's height (pixels; points for PDF)", "H");
    optional("-z,--zoom", options.size.zoom, "scale the canvas by this factor", "Z");
    command.add_flag("--stretch", options.size.stretch,
                     "with both --width and --height, fill them exactly instead of keeping the aspect")
        ->group("Size");
}

CommandRegistration registration(10, [](CLI::App& app, ExitCode& result) {
    auto options = std::make_shared<RenderOptions>();
    CLI::App* sub =
        app.add_subcommand("render", "Render overlay documents to PNG, TIFF, BMP, GIF, JPEG or JPEG 2000 images, to PDF or SVG, or write them as ASC framing decision lists");
    setUsageForms(sub, {"vantel render FILE -o OUT [--format F] [--width W] [--height H] [--zoom Z]",
                        "cat FILE | vantel render - -o - [--format F] > OUT",
                        "vantel render FILE... -o OUT.pdf",
                        "vantel render FILE... -o - --format pdf > OUT.pdf",
                        "vantel render FILE... --out-dir DIR [--format F] [--jobs N]"});
    sub->footer(renderFooter);
    sub->add_option("FILE", options->inputs, "overlay documents (.aspectratio) or framing decision lists (.fdl), files or http(s) URLs; - reads one from standard input")
        ->required()
        ->option_text("FILE...")
        ->group("Input");
    addOutputOptions(*sub, *options);
    addSizeOptions(*sub, *options);
    addBackgroundOption(*sub, options->background);
    addFlattenOption(*sub, options->flatten);
    addFrameLineOptions(*sub, options->frameLines);
    sub->add_option("-j,--jobs", options->jobs, "documents rendered at once (default: one per core)")
        ->check(CLI::Range(1u, 1024u))
        ->option_text("N")
        ->group("Batch");
    sub->callback([options, &result] { result = runRender(*options); });
});

}  // namespace

}  // namespace vantel::cli
