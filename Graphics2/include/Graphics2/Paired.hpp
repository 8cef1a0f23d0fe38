#pragma once

#include <cstddef>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace vantel {

// The consecutive pairs (a0, a1), (a1, a2), ...; empty below two elements.
template <class T>
std::vector<std::pair<T, T>> paired(const std::vector<T>& items) {
    std::vector<std::pair<T, T>> pairs;
    for (std::size_t i = 1; i < items.size(); ++i) pairs.emplace_back(items[i - 1], items[i]);
    return pairs;
}

// Calls body(a, b) for each consecutive pair in order.
template <class T, class Body>
void paired(const std::vector<T>& items, Body&& body) {
    for (std::size_t i = 1; i < items.size(); ++i) body(items[i - 1], items[i]);
}

template <class T, class Transform>
auto pairedMap(const std::vector<T>& items, Transform&& transform) {
    using Result = std::decay_t<std::invoke_result_t<Transform&, const T&, const T&>>;
    std::vector<Result> results;
    paired(items, [&](const T& a, const T& b) { results.push_back(transform(a, b)); });
    return results;
}

// As pairedMap, dropping the pairs whose transform gives no value.
template <class T, class Transform>
auto pairedCompactMap(const std::vector<T>& items, Transform&& transform) {
    using Optional = std::decay_t<std::invoke_result_t<Transform&, const T&, const T&>>;
    std::vector<typename Optional::value_type> results;
    paired(items, [&](const T& a, const T& b) {
        if (auto value = transform(a, b)) results.push_back(std::move(*value));
    });
    return results;
}

}  // namespace vantel
