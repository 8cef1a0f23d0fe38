#pragma once

#include <string_view>

namespace vantel {

// Orders UTF-8 text the way file browsers list names: runs of digits
// compare by their numeric value (file2 before file10) and letters compare
// without regard to case (but with regard to accents). Negative when `a`
// comes first, zero when the two rank equal, positive otherwise. The order
// is the Unicode default (root) collation, the same whatever the process
// locale, so that batch outputs do not depend on the environment.
int compareNaturally(std::string_view a, std::string_view b);

}  // namespace vantel
