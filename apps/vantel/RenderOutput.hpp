#pragma once

// One document rendered to one output file, the way `vantel render` does it
// for each file: read, decode and check the document, draw and encode it in
// memory, then write a temporary file beside the target and rename it into
// place. Whatever fails leaves an earlier output untouched.

#include "CommandRegistry.hpp"
#include "OutputFormat.hpp"

#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/Data.hpp>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantel::cli {

struct RenderOutcome {
    ExitCode code = ExitCode::ok;
    std::vector<std::string> problems;  // one line each, naming the file

    bool ok() const { return code == ExitCode::ok; }
};

// The whole file in memory: a bitmap image, or a one-page vector PDF of the
// canvas. Throws RenderError or std::bad_alloc.
Data encodeDocument(const std::shared_ptr<const OverlayGen>& document, const OutputFormat& format);

// Never throws: every failure becomes an outcome with its lines.
RenderOutcome renderFile(const std::filesystem::path& input, const std::filesystem::path& output,
                         const OutputFormat& format, const std::optional<Color>& background = std::nullopt);

}  // namespace vantel::cli
