#pragma once

// Memory for whole pictures: fresh zeroed pages of its own mapping, aligned
// and marked for 2 MiB pages. Every first touch of a 4 KiB page is a fault
// that zeroes it, about 2,000 for a 1920x1080 bitmap and 8,000 at 3840x2160,
// a large share of a short render's time; huge pages cut that to a handful.
// Where the kernel has no huge page to give, the mapping stays in small pages.
// Smaller pictures are better off in ordinary memory: a mapping of their own
// would still take a whole huge page.

#include <cstddef>
#include <cstdint>
#include <memory>

namespace vantel::pictureMemory {

struct Unmap {
    std::size_t size = 0;
    void operator()(std::uint8_t* address) const;
};

using Buffer = std::unique_ptr<std::uint8_t[], Unmap>;

inline constexpr std::size_t hugePageSize = std::size_t(2) << 20;

// `size` zero bytes; std::bad_alloc when the system has no room.
Buffer allocate(std::size_t size);

}  // namespace vantel::pictureMemory
