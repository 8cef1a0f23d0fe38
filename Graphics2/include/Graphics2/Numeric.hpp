#pragma once

#include <type_traits>

namespace vantel {

constexpr double squared(double value) { return value * value; }
constexpr void square(double& value) { value = value * value; }

// Stroke width in drawing units for a pen of the given weight.
constexpr double penWeight(double weight) { return weight * 2.8; }

// Raises to lo first, then lowers to hi; with lo > hi the result is hi.
template <class T>
constexpr T clamped(const T& value, const std::type_identity_t<T>& lo,
                    const std::type_identity_t<T>& hi) {
    const T& raised = lo >= value ? lo : value;
    return hi < raised ? hi : raised;
}

}  // namespace vantel
