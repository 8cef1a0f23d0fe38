// vantel fdl apply SOURCE TEMPLATE -o RESULT [--canvas ID] [--decision ID] [--template ID]

#include "CommandRegistry.hpp"
#include "DocumentLoading.hpp"
#include "FDLCommands.hpp"
#include "HelpFormat.hpp"
#include "RenderOutput.hpp"

#include <FramingDecisions/CanvasTemplateApplication.hpp>
#include <FramingDecisions/FDLReading.hpp>
#include <FramingDecisions/FDLWriting.hpp>

#include <iostream>
#include <memory>

namespace vantel::cli {

namespace {

struct ApplyOptions {
    std::string source;
    std::string templates;
    std::string output;
    CanvasTemplateSource choice;
    std::optional<std::string> templateID;
};

// A list read and checked as validate checks it; its problems are reported
// and the exit code set when it cannot be used.
std::optional<FDLReadResult> usableList(const std::string& argument, ExitCode& failure) {
    CommandInput input = readCommandInput(argument);
    if (input.unreadable) {
        reportProblems(input.unreadable->problems);
        failure = input.unreadable->failure;
        return std::nullopt;
    }
    failure = ExitCode::badDocument;
    if (!input.framingDecisionList) {
        reportProblems({input.name() + ": not an ASC framing decision list (.fdl)"});
        return std::nullopt;
    }
    FDLReadResult read = readFramingDecisionList(*input.framingDecisionList);
    if (read.hasErrors() || !read.document) {
        for (const FDLProblem& problem : read.problems) {
            if (problem.severity == FDLProblem::Severity::error) reportProblems({input.name() + ": " + problem.text()});
        }
        return std::nullopt;
    }
    return read;
}

const CanvasTemplate* chosenTemplate(const FramingDecisionList& list, const std::optional<std::string>& id) {
    for (const CanvasTemplate& candidate : list.canvasTemplates) {
        if (!id || candidate.id == *id) return &candidate;
    }
    return nullptr;
}

ExitCode runApply(const ApplyOptions& options) {
    if (options.source == standardStream && options.templates == standardStream) {
        throw CLI::ValidationError("SOURCE and TEMPLATE cannot both be read from standard input");
    }
    ExitCode failure = ExitCode::ok;
    std::optional<FDLReadResult> source = usableList(options.source, failure);
    if (!source) return failure;
    std::optional<FDLReadResult> templates = usableList(options.templates, failure);
    if (!templates) return failure;
    const std::string templatesName = documentSource(options.templates).name();
    const CanvasTemplate* canvasTemplate = chosenTemplate(*templates->document, options.templateID);
    if (!canvasTemplate) {
        reportProblems({templatesName + ": holds no canvas template" +
                        (options.templateID ? " \"" + *options.templateID + "\"" : std::string())});
        return ExitCode::badDocument;
    }
    FramingDecisionList result;
    try {
        result = withCanvasTemplateApplied(*source->document, options.choice, *canvasTemplate);
    } catch (const CanvasTemplateError& error) {
        reportProblems({documentSource(options.source).name() + ": cannot apply template \"" + canvasTemplate->id +
                        "\": " + error.what()});
        return ExitCode::badDocument;
    }
    RenderOutcome written = writeEncoded(options.output, options.output,
                                         [&] { return encodeFramingDecisionList(result, &source->json); });
    reportProblems(written.problems);
    return written.code;
}

const char* const applyFooter =
    "Applies a canvas template as the ASC FDL specification describes: the\n"
    "template's fit source (a decision's framing or protection, the canvas or\n"
    "its effective area) is desqueezed, scaled by the fit method into the\n"
    "target size and squeezed to the target squeeze, the layer to preserve is\n"
    "kept around it, the alignment places it, the maximum size crops or pads,\n"
    "and the canvas is rounded last. RESULT is SOURCE with the new canvas right\n"
    "after its source canvas, in the same context, holding one decision; its id\n"
    "is the source canvas's and the template's joined by \"_\". Everything else\n"
    "in SOURCE stays as it was, in its order.\n"
    "Without choices: the first canvas of the first context, its first decision,\n"
    "and TEMPLATE's first canvas template; --decision alone picks the canvas\n"
    "holding it. SOURCE and TEMPLATE may be one file, not both standard input.\n"
    "Exit codes: 0 written, 1 a list has errors, the template asks for a layer\n"
    "the source does not have, or a canvas, decision or template id is not\n"
    "there, 2 bad usage, 3 a file could not be read or written.";

CommandRegistration registration(60, [](CLI::App& app, ExitCode& result) {
    CLI::App* fdl = app.add_subcommand("fdl", "Work on ASC framing decision lists: apply a canvas template");
    setUsageForms(fdl, {"vantel fdl apply SOURCE TEMPLATE -o RESULT [OPTIONS]"});
    fdl->require_subcommand(1);
    fdl->footer("Run \"vantel fdl apply --help\" for its options.\n"
                "Exit codes: as for \"vantel fdl apply\"; 2 when no command is given.");
    auto options = std::make_shared<ApplyOptions>();
    CLI::App* sub = fdl->add_subcommand(
        "apply", "Make a new canvas of a framing decision by a canvas template, and write the list with it");
    setUsageForms(sub, {"vantel fdl apply SOURCE TEMPLATE -o RESULT [--canvas ID] [--decision ID] [--template ID]"});
    sub->footer(applyFooter);
    sub->group("Commands");
    sub->add_option("SOURCE", options->source, "the framing decision list holding the canvas (.fdl); - reads it from standard input")
        ->required()
        ->option_text("SOURCE")
        ->group("Input");
    sub->add_option("TEMPLATE", options->templates,
                    "the framing decision list holding the canvas template (.fdl); - reads it from standard input")
        ->required()
        ->option_text("TEMPLATE")
        ->group("Input");
    sub->add_option("--canvas", options->choice.canvasID, "the id of the canvas to apply the template to")
        ->option_text("ID")
        ->group("Input");
    sub->add_option("--decision", options->choice.decisionID,
                    "the id of the framing decision (on any canvas, without --canvas)")
        ->option_text("ID")
        ->group("Input");
    sub->add_option("--template", options->templateID, "the id of the canvas template in TEMPLATE")
        ->option_text("ID")
        ->group("Input");
    sub->add_option("-o,--output", options->output, "the list to write (.fdl); - writes it to standard output")
        ->required()
        ->option_text("RESULT")
        ->group("Output");
    sub->callback([options, &result] { result = runApply(*options); });
});

}  // namespace

}  // namespace vantel::cli
