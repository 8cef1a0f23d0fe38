#pragma once

// The steps of reading a list, shared by FDLReading.cpp.

#include <FramingDecisions/FDLReading.hpp>

#include <Platform/CodingValue.hpp>

#include <string>
#include <vector>

namespace vantel::detail {

// A value in quotes for a message; a long one is cut short, so that one bad
// value cannot make a line of megabytes.
std::string quoted(const std::string& value);

// Whether the version is one read strictly (2.0); others are read leniently.
bool isStrictVersion(const FDLVersion& version);

// The version member as far as it can be read; 0.0 when it cannot.
FDLVersion versionOf(const CodingValue& root);

// Types, required members, id forms, value ranges: what the published JSON
// schema says, reported with JSON paths.
void checkSchema(const CodingValue& root, bool strict, std::vector<FDLProblem>& problems);

// The model, read leniently: what is missing or of the wrong type takes
// its default (the schema check has said so already).
FramingDecisionList decodeList(const CodingValue& root);

// Ids that resolve and are unique, areas that nest, protections that match
// their intents.
void checkReferences(const FramingDecisionList& list, std::vector<FDLProblem>& problems);

}  // namespace vantel::detail
