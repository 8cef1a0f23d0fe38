#pragma once

#include <cstdint>
#include <vector>

namespace vantel {

// A byte buffer: file contents, encoded images, coded documents.
using Data = std::vector<std::uint8_t>;

}  // namespace vantel
