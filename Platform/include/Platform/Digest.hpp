#pragma once

#include <string>
#include <string_view>

namespace vantel {

// The SHA-1 digest of the bytes as 40 lower-case hexadecimal digits.
std::string sha1Hex(std::string_view bytes);

}  // namespace vantel
