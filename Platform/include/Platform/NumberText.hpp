#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vantel {

// The one rule for writing a double as text: the shortest decimal that reads
// back as the same value, always with a fractional part ("10.0", "2.5",
// "1e-05"). Infinities and NaN read "inf", "-inf" and "nan".
std::string numberText(double value);

// The value truncated toward zero. A value no 64-bit integer holds (not
// finite, or beyond +-2^63) is a programming error: the process stops with
// "<what> <value> cannot be converted to <unit>".
std::int64_t truncatedInteger(double value, std::string_view what, std::string_view unit = "an integer");

}  // namespace vantel
