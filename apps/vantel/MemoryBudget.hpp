#pragma once

// The memory the documents rendered at once may hold together. A render
// takes its share before it draws and gives it back once its file is
// written, so a batch of large pictures renders fewer at a time than --jobs
// asks for, while small ones keep every worker busy.

#include <condition_variable>
#include <mutex>

namespace vantel::cli {

class MemoryBudget {
public:
    explicit MemoryBudget(double bytes) : bytes_(bytes) {}
    MemoryBudget(const MemoryBudget&) = delete;
    MemoryBudget& operator=(const MemoryBudget&) = delete;

    // A share held until it is destroyed; an empty one holds nothing.
    class Reservation {
    public:
        Reservation() = default;
        Reservation(Reservation&& other) noexcept;
        Reservation& operator=(Reservation&& other) noexcept;
        ~Reservation();

    private:
        friend class MemoryBudget;
        Reservation(MemoryBudget* budget, double bytes) : budget_(budget), bytes_(bytes) {}
        MemoryBudget* budget_ = nullptr;
        double bytes_ = 0;
    };

    // Waits until `bytes` fit beside what the others hold. A share larger
    // than the whole budget waits until nothing else is held, then runs alone.
    Reservation reserve(double bytes);

    // A budget for this machine: `largest` (what one picture may hold), or
    // half the physical memory when that is less.
    static double forThisMachine(double largest);

private:
    void release(double bytes);

    std::mutex mutex_;
    std::condition_variable released_;
    double bytes_;
    double held_ = 0;
};

}  // namespace vantel::cli
