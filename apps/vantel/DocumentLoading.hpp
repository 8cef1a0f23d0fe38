#pragma once

// Reading a document the way every command does: read the file, decode the
// overlay, check that it can be drawn. Whatever goes wrong becomes one line
// per problem, "FILE: what", never a crash.

#include "CommandRegistry.hpp"

#include <OverlayGenerator/OverlayGen.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vantel::cli {

struct LoadedDocument {
    std::optional<OverlayGen> document;  // present when it can be drawn
    ExitCode failure = ExitCode::ok;     // why not, when absent
    std::vector<std::string> problems;   // one line each, naming the file

    bool ok() const { return document.has_value(); }
};

// `checks` false only decodes (for commands that describe bad documents too).
LoadedDocument loadDocument(const std::filesystem::path& file, bool checks = true);

// Prints each line on standard error.
void reportProblems(const std::vector<std::string>& lines);

}  // namespace vantel::cli
