#include "ParallelWork.hpp"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace vantel::parallel {

unsigned threadCount() { return std::max(1u, std::thread::hardware_concurrency()); }

void forEach(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next{0};
    std::atomic<bool> failed{false};
    std::exception_ptr firstFailure;
    std::mutex failureLock;
    auto takeItems = [&] {
        for (std::size_t i = next++; i < count && !failed; i = next++) {
            try {
                work(i);
            } catch (...) {
                std::lock_guard lock(failureLock);
                if (!firstFailure) firstFailure = std::current_exception();
                failed = true;
            }
        }
    };
    const std::size_t helpers = std::min<std::size_t>(count, std::max(threads, 1u)) - (count > 0 ? 1 : 0);
    std::vector<std::thread> workers;
    try {
        for (std::size_t i = 0; i < helpers; ++i) workers.emplace_back(takeItems);
    } catch (const std::system_error&) {
        // Fewer threads than asked for: the ones running share the work.
    }
    takeItems();
    for (std::thread& worker : workers) worker.join();
    if (firstFailure) std::rethrow_exception(firstFailure);
}

}  // namespace vantel::parallel
