#pragma once

// Cheap checks of a property list's shape made before libplist sees it.
// libplist frees its trees recursively and reads binary property lists
// recursively, and it copies an object once per reference to it; hostile
// input could therefore exhaust the stack or memory inside the library.

#include <Platform/CodingValue.hpp>
#include <Platform/Data.hpp>

#include <cstddef>
#include <optional>
#include <string>

namespace vantel::detail {

struct PropertyListLimits {
    std::size_t maximumDepth;
    std::size_t maximumNodes;  // values after shared objects are expanded
};

// Why an input is refused, and where when a value is to blame.
struct ShapeRefusal {
    CodingPath codingPath;  // empty when the whole input is
    std::string description;
};

// Each returns why the input is refused, or nothing when it may be parsed.
// Malformed input that the checks do not need to understand passes; the
// parser turns it down. The XML check also refuses integer text that
// libplist would read as another number (see isPlainInt64Text).
std::optional<ShapeRefusal> checkXMLPropertyListShape(const Data& bytes, const PropertyListLimits& limits);
// Binary input that the check cannot follow (bad offsets, references out of
// range, cycles) is refused here.
std::optional<ShapeRefusal> checkBinaryPropertyListShape(const Data& bytes, const PropertyListLimits& limits);

}  // namespace vantel::detail
