#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace vantel {

// The system's secure random source (getrandom(2)), the one place the code
// draws unpredictable bytes from: UUIDs, palette picks, noise tables.
// A failing source is a broken system, not bad input: it stops the process.
void fillSecureRandom(std::span<std::uint8_t> bytes);

// An integer drawn uniformly from the closed range [low, high], without
// modulo bias. low must not exceed high.
std::uint64_t secureRandomInClosedRange(std::uint64_t low, std::uint64_t high);

// A value drawn uniformly from the closed interval [0, 1]: an integer k from
// 0 ... 2^53, then 1 when k is 2^53, else k * 2^-53.
double secureRandomUnitClosed();

// The same source as a UniformRandomBitGenerator, for <random>'s
// distributions.
struct SecureRandom {
    using result_type = std::uint64_t;
    static constexpr result_type min() { return 0; }
    static constexpr result_type max() { return std::numeric_limits<result_type>::max(); }
    result_type operator()() const;
};

}  // namespace vantel
