// vantel validate FILE...

#include "CommandRegistry.hpp"
#include "HelpFormat.hpp"
#include "DocumentLoading.hpp"
#include "FDLCommands.hpp"

#include <iostream>
#include <memory>

namespace vantel::cli {

namespace {

ExitCode runValidate(const std::vector<std::string>& files) {
    ExitCode result = ExitCode::ok;
    for (const std::string& file : files) {
        CommandInput input = readCommandInput(file);
        if (input.framingDecisionList) {
            result = worse(result, validateFramingDecisionList(input));
            continue;
        }
        CommandDocument loaded = input.unreadable ? std::move(*input.unreadable) : readDocument(input.source);
        if (loaded.ok()) {
            std::cout << input.name() << ": ok\n";
        } else {
            std::cout.flush();
            reportProblems(loaded.problems);
        }
        result = worse(result, loaded.failure);
    }
    return result;
}

const char* const validateFooter =
    "Prints \"FILE: ok\" on standard output for each document that can be drawn\n"
    "(\"stdin: ok\" for -, as in every message about standard input),\n"
    "and one line per problem on standard error for the others, naming where the\n"
    "value is: \"FILE: ratios[1].children[0].columnType: ...\".\n"
    "Exit codes: 0 every document is fine, 1 a document is bad, 2 bad usage,\n"
    "3 a file could not be read (the most serious one when several failed).\n"
    "An ASC framing decision list (.fdl, or JSON with \"uuid\" and \"version\") is\n"
    "checked against the ASC FDL rules instead: \"FILE: error: PATH: what\" and\n"
    "\"FILE: warning: PATH: what\" on standard error; only errors make it bad.";

CommandRegistration registration(40, [](CLI::App& app, ExitCode& result) {
    auto files = std::make_shared<std::vector<std::string>>();
    CLI::App* sub = app.add_subcommand(
        "validate", "Check that overlay documents can be read and drawn; report every value that cannot");
    setUsageForms(sub, {"vantel validate FILE..."});
    sub->footer(validateFooter);
    sub->add_option("FILE", *files, "overlay documents (.aspectratio files or http(s) URLs) or ASC framing decision lists (.fdl); - reads one from standard input")
        ->required()
        ->option_text("FILE...")
        ->group("Input");
    sub->callback([files, &result] { result = runValidate(*files); });
});

}  // namespace

}  // namespace vantel::cli
