#pragma once

// The command's side of reading a document: an argument names a file, a
// file, http or https URL, or standard input as "-"; the library's loadDocument reads, decodes and checks
// it, and this turns what went wrong into the command's lines, "NAME: what",
// and exit code.

#include "CommandRegistry.hpp"

#include <OverlayGenerator/DocumentLoading.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantel::cli {

struct CommandDocument {
    std::shared_ptr<OverlayGen> document;  // present when it can be drawn
    ExitCode failure = ExitCode::ok;             // why not, when absent
    std::vector<std::string> problems;           // one line each, naming the input

    bool ok() const { return document != nullptr; }
};

// "-" is standard input, named "stdin" in messages; text starting with
// "http://", "https://" or "file://" is a URL, anything else a file name.
DocumentSource documentSource(const std::string& argument);

// The name an output made from the argument takes, without extension: the
// file's or the URL's last path component ("shot" for .../shot.aspectratio),
// "stdin" for "-", and "index" for a web address that names no file. A
// last component that decodes to no file name ("a%2Fb", "%00", "..")
// throws CLI::ValidationError.
std::string outputStem(const std::string& argument);

// `checks` false only decodes (for commands that describe bad documents too).
// A background, when given, replaces the document's own (--background).
CommandDocument readDocument(const DocumentSource& source, bool checks = true,
                             const std::optional<Color>& background = std::nullopt);

// Prints each line on standard error.
void reportProblems(const std::vector<std::string>& lines);

}  // namespace vantel::cli
