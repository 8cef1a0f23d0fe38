// The budget that makes `vantel render --jobs N` take fewer large pictures
// at once, without a process or gigabytes around it.
#include "MemoryBudget.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <chrono>
#include <thread>

using vantel::cli::MemoryBudget;

TEST(MemoryBudgetTest, ASharePastWhatIsLeftWaitsForARelease) {
    MemoryBudget budget(10);
    std::atomic<bool> secondHeld{false};
    std::optional<MemoryBudget::Reservation> first = budget.reserve(6);
    std::thread second([&] {
        MemoryBudget::Reservation held = budget.reserve(6);
        secondHeld = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(secondHeld);
    first.reset();
    second.join();
    EXPECT_TRUE(secondHeld);

    // Small shares go side by side; one larger than the whole runs alone.
    MemoryBudget::Reservation a = budget.reserve(5);
    MemoryBudget::Reservation b = budget.reserve(5);
    a = MemoryBudget::Reservation();
    b = MemoryBudget::Reservation();
    MemoryBudget::Reservation huge = budget.reserve(50);
}
