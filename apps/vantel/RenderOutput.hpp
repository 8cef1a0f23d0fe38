#pragma once

// One document rendered to one output file, the way `vantel render` does it
// for each file: read, decode and check the document, draw and encode it in
// memory, then write a temporary file beside the target and rename it into
// place. Whatever fails leaves an earlier output untouched.

#include "CommandRegistry.hpp"
#include "FrameLineOptions.hpp"
#include "MemoryBudget.hpp"
#include "OutputFormat.hpp"
#include "OutputSize.hpp"

#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/Data.hpp>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantel::cli {

// The name of standard input as an input, and of standard output as -o.
inline const std::filesystem::path standardStream = "-";

// How each document is drawn: at the size asked for, over the background
// asked for (its own when none), for bitmaps laid onto an opaque colour
// when one is given (--flatten); with a memory budget when several render
// at once.
struct DrawingChoices {
    SizeRequest size;
    std::optional<Color> background;
    std::optional<Color> flatten;
    MemoryBudget* memory = nullptr;
    FrameLineOptions frameLines{};  // for framing decision lists
};

struct RenderOutcome {
    ExitCode code = ExitCode::ok;
    std::vector<std::string> problems;  // one line each, naming the file

    bool ok() const { return code == ExitCode::ok; }
};

// Several documents as one PDF, a page each in order, each page its own
// canvas's size (or the size asked for). Every document is read and checked
// before anything is written; a bad one fails the whole file. Never throws.
RenderOutcome renderPDFPages(const std::vector<std::filesystem::path>& inputs, const std::filesystem::path& output,
                             const DrawingChoices& choices = {});

// The bytes `encode` makes, written to `output` as every rendering is; what
// `encode` throws becomes NAME's line. Never throws.
RenderOutcome writeEncoded(const std::string& name, const std::filesystem::path& output,
                           const std::function<Data()>& encode);

// Never throws: every failure becomes an outcome with its lines.
RenderOutcome renderFile(const std::filesystem::path& input, const std::filesystem::path& output,
                         const OutputFormat& format, const DrawingChoices& choices = {});

}  // namespace vantel::cli
