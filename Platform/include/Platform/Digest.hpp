#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace vantel {

using SHA1Digest = std::array<std::uint8_t, 20>;

// The SHA-1 digest of the bytes.
SHA1Digest sha1Digest(std::string_view bytes);

// The SHA-1 digest of the bytes as 40 lower-case hexadecimal digits.
std::string sha1Hex(std::string_view bytes);

}  // namespace vantel
