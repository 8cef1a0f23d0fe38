#pragma once

#include <Platform/Coding.hpp>
#include <Platform/Hashing.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>

namespace vantel {

// How grid lines are placed along one side of a guide's rectangle: not at all,
// every `n` units (pixels) or so that the side falls into `n` equal parts
// (divisor). Coded as a one-key dictionary naming the case:
// {"none": {}}, {"pixels": {"_0": 50}}, {"divisor": {"_0": 3}}.
struct GridType {
    enum class Case { none, pixels, divisor };

    Case tag = Case::none;
    std::int64_t payload = 0;  // always 0 for none

    static GridType none() { return {}; }
    static GridType pixels(std::int64_t n) { return {Case::pixels, n}; }
    static GridType divisor(std::int64_t n) { return {Case::divisor, n}; }

    // Keys other than the three case names are ignored; zero or several case
    // names fail with a type mismatch at the dictionary's path.
    static GridType decode(const Decoder& decoder);
    void encode(Encoder& encoder) const;

    friend bool operator==(const GridType&, const GridType&) = default;
};

}  // namespace vantel

template <>
struct std::hash<vantel::GridType> {
    std::size_t operator()(const vantel::GridType& grid) const noexcept {
        return vantel::hashOfFields(static_cast<int>(grid.tag), grid.payload);
    }
};
