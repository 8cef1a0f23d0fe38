#pragma once

// Writing a Framing Decision List as JSON. A list made here gets its members
// in the order of the ASC's schema, whole numbers where the schema wants
// integers, and each object's "_" properties after its own members. A list
// that was read and then changed is written the way its file held it: with
// the JSON as read beside it, every member keeps its place and every number
// that did not change keeps its form (4448 stays 4448, 1920.0 stays 1920.0),
// so that a diff of the two files shows only what changed.

#include <FramingDecisions/FramingDecisionList.hpp>
#include <Platform/CodingValue.hpp>
#include <Platform/Data.hpp>

namespace vantel {

// The list as a JSON tree, laid out as `asRead` when given. Objects and
// array items are matched to the ones read by their "id", or by position
// where they have none; a new one (a canvas added, say) is written in the
// schema's order.
CodingValue encodedList(const FramingDecisionList& list, const CodingValue* asRead = nullptr);

// The same as indented JSON text ending in a newline. EncodingError for a
// number JSON cannot hold (infinite, NaN).
Data encodeFramingDecisionList(const FramingDecisionList& list, const CodingValue* asRead = nullptr);

}  // namespace vantel
