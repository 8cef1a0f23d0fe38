#pragma once

#include <string>

namespace vantel {

// The one rule for writing a double as text: the shortest decimal that reads
// back as the same value, always with a fractional part ("10.0", "2.5",
// "1e-05"). Infinities and NaN read "inf", "-inf" and "nan".
std::string numberText(double value);

}  // namespace vantel
