// vantel render FILE -o OUT [--format F]
// vantel render FILE... --out-dir DIR [--format F] [--jobs N]

#include "BackgroundOption.hpp"
#include "BatchProgress.hpp"
#include "CommandRegistry.hpp"
#include "DocumentLoading.hpp"
#include "OutputFormat.hpp"
#include "RenderOutput.hpp"

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
    std::string background;
    unsigned jobs = 0;  // 0: one per core
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
    if (options.output.empty()) return *OutputFormat::named("png");
    if (auto format = OutputFormat::forFile(options.output)) return *format;
    throw CLI::ValidationError("-o", "cannot tell the format from '" + options.output +
                                         "'; end the name in one of " + OutputFormat::namesText() +
                                         " or give --format");
}

void checkOutputNaming(const RenderOptions& options) {
    if (options.output.empty() && options.outDir.empty()) {
        throw CLI::ValidationError("name the output with -o FILE, or a folder for several with --out-dir DIR");
    }
    if (!options.output.empty() && options.inputs.size() != 1) {
        throw CLI::ValidationError("-o", "names one output for one document; use --out-dir DIR for several");
    }
}

// A document must never be replaced by its own rendering.
void refuseOverwritingInput(const RenderJob& job) {
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
            fs::path output = fs::path(options.outDir) / fs::path(input).stem();
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
// Each document is read, laid out and drawn on the worker that took it.
ExitCode renderAll(const std::vector<RenderJob>& jobs, const OutputFormat& format,
                   const std::optional<Color>& background, unsigned threads, BatchProgress& progress) {
    std::atomic<std::size_t> next{0};
    std::vector<ExitCode> codes(jobs.size(), ExitCode::ok);
    auto work = [&] {
        for (std::size_t i = next++; i < jobs.size(); i = next++) {
            RenderOutcome outcome = renderFile(jobs[i].input, jobs[i].output, format, background);
            codes[i] = outcome.code;
            if (outcome.ok()) {
                progress.succeeded();
            } else {
                progress.failed(outcome.problems);
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

ExitCode runRender(const RenderOptions& options) {
    checkOutputNaming(options);
    const OutputFormat format = chosenFormat(options);
    const std::optional<Color> background = chosenBackground(options.background);
    const std::vector<RenderJob> jobs = plannedJobs(options, format);
    if (!options.output.empty()) {
        RenderOutcome outcome = renderFile(jobs.front().input, jobs.front().output, format, background);
        reportProblems(outcome.problems);
        return outcome.code;
    }
    if (ExitCode made = makeFolder(options.outDir); made != ExitCode::ok) return made;
    BatchProgress progress(jobs.size(), BatchProgress::standardErrorIsTerminal(), std::cout, std::cerr);
    ExitCode result = renderAll(jobs, format, background, threadCount(options, jobs.size()), progress);
    progress.finish();
    return result;
}

const char* const renderFooter =
    "Forms:\n"
    "  vantel render FILE -o OUT [--format F]\n"
    "  vantel render FILE... --out-dir DIR [--format F] [--jobs N]\n"
    "Each document is checked first; a document that cannot be drawn is refused\n"
    "with one line per problem. Outputs are written to a temporary file beside\n"
    "the target and renamed into place, so a failed render leaves an earlier\n"
    "file untouched. With --out-dir, each output is DIR/<name of FILE without\n"
    "its extension>.<format>; documents render in parallel, one line is printed\n"
    "per failed file and a summary at the end.\n"
    "Exit codes: 0 every file rendered, 1 a document is bad, 2 bad usage,\n"
    "3 an input or output file could not be read or written (the most serious\n"
    "one when several files failed).";

CommandRegistration registration(10, [](CLI::App& app, ExitCode& result) {
    auto options = std::make_shared<RenderOptions>();
    CLI::App* sub =
        app.add_subcommand("render", "Render overlay documents to PNG, TIFF, BMP, GIF, JPEG or JPEG 2000 images, or to PDF");
    sub->footer(renderFooter);
    sub->add_option("files", options->inputs, "overlay documents (.aspectratio)")->required();
    auto* output = sub->add_option("-o,--output", options->output, "the output file, for one document");
    auto* outDir = sub->add_option("--out-dir", options->outDir, "the folder to write outputs into (made if missing)");
    output->excludes(outDir);
    sub->add_option("-f,--format", options->format,
                    "the output format: " + OutputFormat::namesText() +
                        " (default: from the -o name; png with --out-dir)");
    sub->add_option("-j,--jobs", options->jobs, "documents rendered at once (default: one per core)")
        ->check(CLI::Range(1u, 1024u));
    addBackgroundOption(*sub, options->background);
    sub->callback([options, &result] { result = runRender(*options); });
});

}  // namespace

}  // namespace vantel::cli
