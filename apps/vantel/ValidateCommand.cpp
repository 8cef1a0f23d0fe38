// vantel validate FILE...

#include "CommandRegistry.hpp"
#include "HelpFormat.hpp"
#include "DocumentLoading.hpp"

#include <iostream>
#include <memory>

namespace vantel::cli {

namespace {

ExitCode runValidate(const std::vector<std::string>& files) {
    ExitCode result = ExitCode::ok;
    for (const std::string& file : files) {
        // Named as its problems are: "-" is "stdin" in both.
        const DocumentSource source = documentSource(file);
        CommandDocument loaded = readDocument(source);
        if (loaded.ok()) {
            std::cout << source.name() << ": ok\n";
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
    "3 a file could not be read (the most serious one when several failed).";

CommandRegistration registration(40, [](CLI::App& app, ExitCode& result) {
    auto files = std::make_shared<std::vector<std::string>>();
    CLI::App* sub = app.add_subcommand(
        "validate", "Check that overlay documents can be read and drawn; report every value that cannot");
    setUsageForms(sub, {"vantel validate FILE..."});
    sub->footer(validateFooter);
    sub->add_option("FILE", *files, "overlay documents (.aspectratio files or http(s) URLs); - reads one from standard input")
        ->required()
        ->option_text("FILE...")
        ->group("Input");
    sub->callback([files, &result] { result = runValidate(*files); });
});

}  // namespace

}  // namespace vantel::cli
