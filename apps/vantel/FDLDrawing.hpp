#pragma once

// Framing decision lists in `vantel render` and `vantel thumbnail`: a list is
// drawn as the frame-line chart of one canvas, through the same outputs as
// an overlay document. A list with errors is refused with its first error.

#include "CommandRegistry.hpp"
#include "FDLCommands.hpp"
#include "RenderOutput.hpp"

#include <filesystem>
#include <optional>

namespace vantel::cli {

// Never throws: every failure becomes an outcome with its line.
RenderOutcome renderFramingDecisionList(const CommandInput& input, const std::filesystem::path& output,
                                        const OutputFormat& format, const DrawingChoices& choices);

// The thumbnail of a file named ".fdl", written to `output` as the overlay
// thumbnail is; nothing for any other name, which the overlay path takes.
std::optional<ExitCode> thumbnailFramingDecisionList(const std::filesystem::path& file, int maxSide,
                                                     const std::optional<Color>& background,
                                                     const std::filesystem::path& output);

}  // namespace vantel::cli
