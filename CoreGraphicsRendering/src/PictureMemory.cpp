#include "PictureMemory.hpp"

#include <sys/mman.h>

#include <new>

namespace vantel::pictureMemory {

namespace {

constexpr std::size_t hugePage = hugePageSize;

std::size_t roundedUp(std::size_t size, std::size_t unit) { return (size + unit - 1) / unit * unit; }

}  // namespace

void Unmap::operator()(std::uint8_t* address) const {
    if (address != nullptr) ::munmap(address, size);
}

Buffer allocate(std::size_t size) {
    // Map one huge page more than needed, then give back what lies before
    // the first huge-page boundary and after the rounded-up end.
    const std::size_t length = roundedUp(size == 0 ? 1 : size, hugePage);
    if (length < size || length + hugePage < length) throw std::bad_alloc();
    void* mapped = ::mmap(nullptr, length + hugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) throw std::bad_alloc();
    auto* start = static_cast<std::uint8_t*>(mapped);
    auto* aligned = reinterpret_cast<std::uint8_t*>(
        roundedUp(reinterpret_cast<std::uintptr_t>(start), hugePage));
    const auto head = static_cast<std::size_t>(aligned - start);
    if (head > 0) ::munmap(start, head);
    if (hugePage - head > 0) ::munmap(aligned + length, hugePage - head);
    // Only advice: without huge pages the memory works the same, more slowly.
    ::madvise(aligned, length, MADV_HUGEPAGE);
    return Buffer(aligned, Unmap{length});
}

}  // namespace vantel::pictureMemory
