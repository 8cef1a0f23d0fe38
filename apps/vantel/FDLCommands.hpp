#pragma once

// Framing decision lists (.fdl) in `vantel validate` and `vantel info`. An
// argument is read once; its bytes say whether it is a framing decision
// list or an overlay document, which goes on to the overlay path unchanged.

#include "CommandRegistry.hpp"
#include "DocumentLoading.hpp"

#include <Platform/Data.hpp>

#include <optional>
#include <string>

namespace vantel::cli {

struct CommandInput {
    DocumentSource source;                    // for the overlay path: the bytes already read
    std::optional<Data> framingDecisionList;  // set when the input is one
    std::optional<CommandDocument> unreadable;  // set when the input could not be read

    const std::string& name() const { return source.name(); }
};

CommandInput readCommandInput(const std::string& argument);
CommandInput readCommandInput(DocumentSource source);

// Each problem on standard error, "NAME: error: PATH: what" or "NAME:
// warning: ...", then "NAME: ok" when there is no error.
ExitCode validateFramingDecisionList(const CommandInput& input);

// Contexts, canvases and decisions with every area as the file holds it and
// snapped to whole pixels; a list with errors is refused as validate words it.
ExitCode describeFramingDecisionList(const CommandInput& input, bool json);

}  // namespace vantel::cli
