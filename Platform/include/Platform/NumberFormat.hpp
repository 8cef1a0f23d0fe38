#pragma once

#include <string>

namespace vantel {

// A double as people read it in the default locale (ICU's number formatting
// with its default settings): 16 reads "16", 1.5 reads "1.5" in English and
// "1,5" in German, large values get the locale's grouping. For text meant for
// files and round trips use numberText instead.
std::string formatDecimal(double value);

}  // namespace vantel
