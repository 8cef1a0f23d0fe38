#pragma once

#include <optional>
#include <type_traits>
#include <vector>

namespace vantel {

// Whether a type is a std::vector or a std::optional: the coders handle
// those themselves, and type-erased wrappers must not swallow them.
template <class T>
struct IsVector : std::false_type {};
template <class T, class A>
struct IsVector<std::vector<T, A>> : std::true_type {};
template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};

}  // namespace vantel
