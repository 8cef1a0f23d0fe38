#pragma once

// Hashes of values made of several fields, for the std::hash
// specialisations of value types.

#include <cstddef>
#include <functional>
#include <type_traits>

namespace vantel {

// Folds one more field's hash into `seed` (the golden-ratio mix that spreads
// small differences over all bits).
template <class T>
void combineHash(std::size_t& seed, const T& value) {
    std::size_t hash;
    if constexpr (std::is_floating_point_v<T>) {
        hash = std::hash<T>{}(value == 0 ? T(0) : value);  // -0.0 == 0.0, so they hash alike
    } else {
        hash = std::hash<T>{}(value);
    }
    seed ^= hash + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
}

// The hash of all the fields, in order.
template <class... Fields>
std::size_t hashOfFields(const Fields&... fields) {
    std::size_t seed = 0;
    (combineHash(seed, fields), ...);
    return seed;
}

}  // namespace vantel
