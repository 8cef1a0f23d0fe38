#pragma once

#include <string>
#include <string_view>

namespace vantel {

// The current date and time written with an ICU date pattern ("yyyy-MM-dd",
// "HH:mm"), in the default locale and time zone. A pattern ICU rejects is a
// programming error and stops the process.
std::string formatNow(std::string_view icuPattern);

}  // namespace vantel
