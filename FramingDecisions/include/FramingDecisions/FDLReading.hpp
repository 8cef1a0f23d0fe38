#pragma once

// Reading a Framing Decision List: recognising one, decoding it and checking
// it. Version 2.0 lists are held to every rule; 0.1 and 1.x lists were
// written before some rules existed, so what those versions did not yet
// forbid is only a warning there.

#include <FramingDecisions/FramingDecisionList.hpp>
#include <Platform/Data.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantel {

// One finding, where it is (a JSON path such as
// "contexts[0].canvases[1].framing_decisions[0].dimensions.width", empty for
// the whole list) and what. Errors make the list unusable; warnings do not.
struct FDLProblem {
    enum class Severity { error, warning };
    Severity severity = Severity::error;
    std::string path;
    std::string message;

    // "error: path: message" ("warning: ..."), without the path when empty.
    std::string text() const;
    friend bool operator==(const FDLProblem&, const FDLProblem&) = default;
};

struct FDLReadResult {
    // Set whenever the bytes are a JSON object, even one with errors, so
    // that a list can be described while it is being repaired.
    std::optional<FramingDecisionList> document;
    // The JSON object as read, beside the document: writing a changed list
    // with it (encodeFramingDecisionList) keeps the file's own layout.
    CodingValue json;
    // The form of each value first, then how the values refer to each other.
    std::vector<FDLProblem> problems;

    bool hasErrors() const;
};

// A name ending in ".fdl" (any case), or bytes holding a JSON object with
// "uuid" and "version" members: no overlay document looks like that.
bool isFramingDecisionList(const Data& bytes, std::string_view name);

// Decodes and checks. Bad input is reported in the problems, never thrown.
FDLReadResult readFramingDecisionList(const Data& bytes);

}  // namespace vantel
