#pragma once

// Cheap checks of a property list's shape made before libplist sees it.
// libplist frees its trees recursively and reads binary property lists
// recursively, and it copies an object once per reference to it; hostile
// input could therefore exhaust the stack or memory inside the library.

#include <Platform/Data.hpp>

#include <cstddef>
#include <optional>
#include <string>

namespace vantel::detail {

struct PropertyListLimits {
    std::size_t maximumDepth;
    std::size_t maximumNodes;  // values after shared objects are expanded
};

// Each returns why the input is refused, or nothing when it may be parsed.
// Malformed input that the checks do not need to understand passes; the
// parser turns it down.
std::optional<std::string> checkXMLPropertyListShape(const Data& bytes,
                                                     const PropertyListLimits& limits);
// Binary input that the check cannot follow (bad offsets, references out of
// range, cycles) is refused here.
std::optional<std::string> checkBinaryPropertyListShape(const Data& bytes,
                                                        const PropertyListLimits& limits);

}  // namespace vantel::detail
