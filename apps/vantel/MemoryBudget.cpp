#include "MemoryBudget.hpp"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantel::cli {

MemoryBudget::Reservation::Reservation(Reservation&& other) noexcept
    : budget_(std::exchange(other.budget_, nullptr)), bytes_(other.bytes_) {}

MemoryBudget::Reservation& MemoryBudget::Reservation::operator=(Reservation&& other) noexcept {
    if (this != &other) {
        if (budget_) budget_->release(bytes_);
        budget_ = std::exchange(other.budget_, nullptr);
        bytes_ = other.bytes_;
    }
    return *this;
}

MemoryBudget::Reservation::~Reservation() {
    if (budget_) budget_->release(bytes_);
}

MemoryBudget::Reservation MemoryBudget::reserve(double bytes) {
    bytes = std::ceil(bytes);  // whole bytes add up exactly, so nothing is left held
    std::unique_lock lock(mutex_);
    released_.wait(lock, [&] { return held_ == 0 || held_ + bytes <= bytes_; });
    held_ += bytes;
    return Reservation(this, bytes);
}

void MemoryBudget::release(double bytes) {
    {
        std::lock_guard lock(mutex_);
        held_ -= bytes;
    }
    released_.notify_all();
}

double MemoryBudget::forThisMachine(double largest) {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGE_SIZE);
    if (pages <= 0 || pageSize <= 0) return largest;
    return std::min(largest, double(pages) * double(pageSize) / 2);
}

}  // namespace vantel::cli
