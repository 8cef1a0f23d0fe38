#pragma once

// Framing decision lists in `vantel render`: a list is drawn as the
// frame-line chart of one canvas, through the same outputs as an overlay
// document. A list with errors is refused with its first error. Thumbnails
// draw theirs in VantelPreview's FileThumbnail, shared with the KDE plugin.

#include "CommandRegistry.hpp"
#include "FDLCommands.hpp"
#include "RenderOutput.hpp"

#include <CoreGraphicsRendering/PDFDocument.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vantel::cli {

// Never throws: every failure becomes an outcome with its line.
RenderOutcome renderFramingDecisionList(const CommandInput& input, const std::filesystem::path& output,
                                        const OutputFormat& format, const DrawingChoices& choices);

// The chart as the next page of a PDF of several documents; nothing added
// and the lines in the outcome when it cannot be drawn.
RenderOutcome addFramingDecisionListPage(const CommandInput& input, const DrawingChoices& choices,
                                         std::vector<PDFPage>& pages);

}  // namespace vantel::cli
