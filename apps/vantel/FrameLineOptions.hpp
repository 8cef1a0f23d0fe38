#pragma once

// --canvas, --decision and --desqueeze of `vantel render`: which canvas of a
// framing decision list is drawn, with which decisions, and whether the
// anamorphic squeeze is undone. Overlay documents ignore them.

#include <CLI/CLI.hpp>
#include <FramingDecisions/FrameLineChart.hpp>

namespace vantel::cli {

struct FrameLineOptions {
    FrameLineChoice choice;
    bool desqueeze = false;
};

void addFrameLineOptions(CLI::App& command, FrameLineOptions& options);

}  // namespace vantel::cli
