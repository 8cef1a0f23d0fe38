#pragma once

// Conveniences on collections with positions counted from 0: checked and
// wrapping access, position tests, the smallest and largest element, sorting
// by a given order, and dropping absent values.

#include <Platform/Fatal.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

namespace vantel {

template <class Collection>
bool isNotEmpty(const Collection& collection)
    requires requires { collection.empty(); }
{
    return !collection.empty();
}

inline bool isFalse(bool value) { return !value; }

template <std::ranges::sized_range Collection>
bool indexIsValid(const Collection& collection, std::ptrdiff_t position) {
    return position >= 0 && position < std::ranges::ssize(collection);
}

// With orGreater, any position at or past the last one counts.
template <std::ranges::sized_range Collection>
bool indexIsLast(const Collection& collection, std::ptrdiff_t position, bool orGreater) {
    std::ptrdiff_t count = std::ranges::ssize(collection);
    return orGreater ? position + 1 >= count : position + 1 == count;
}

// With orLess, any position below 1 counts (negative ones too).
template <std::ranges::sized_range Collection>
bool indexIsFirst(const Collection&, std::ptrdiff_t position, bool orLess) {
    return orLess ? position < 1 : position == 0;
}

// The element, or nothing for a position outside the collection.
template <std::ranges::random_access_range Collection>
auto safe(const Collection& collection, std::ptrdiff_t position)
    -> std::optional<std::ranges::range_value_t<Collection>> {
    if (!indexIsValid(collection, position)) return std::nullopt;
    return std::ranges::begin(collection)[position];
}

// The element at position modulo the count: 4 in three elements is 1. The
// remainder keeps the position's sign, so a negative position is out of
// range and stops the process, as an empty collection does; callers count
// forward only.
template <std::ranges::random_access_range Collection>
decltype(auto) looping(const Collection& collection, std::ptrdiff_t position) {
    std::ptrdiff_t count = std::ranges::ssize(collection);
    if (count == 0) fatalError("Looping access into an empty collection");
    std::ptrdiff_t wrapped = position % count;
    if (wrapped < 0) fatalError("Index out of range: " + std::to_string(wrapped));
    return std::ranges::begin(collection)[wrapped];
}

// The smallest and the largest element (the first of equal ones), or nothing
// for an empty collection.
template <std::ranges::forward_range Collection>
auto range(const Collection& collection)
    -> std::optional<std::pair<std::ranges::range_value_t<Collection>, std::ranges::range_value_t<Collection>>> {
    if (std::ranges::empty(collection)) return std::nullopt;
    // The classic algorithms ask only for "<", as the elements' ordering does.
    auto first = std::ranges::begin(collection);
    auto last = std::ranges::end(collection);
    return std::pair{*std::min_element(first, last), *std::max_element(first, last)};
}

// Sorts by each element's first position in `order`. Elements missing from
// it rank 0 with unknownToStart (tying with order's first entry), otherwise
// they rank as the array's own count, which is past order's end only when
// the array is at least as long as order; this ranking is relied on, keep it.
// Equal ranks keep no particular order.
template <class Element>
void sort(std::vector<Element>& array, const std::vector<Element>& order, bool unknownToStart) {
    const auto fallback = static_cast<std::ptrdiff_t>(unknownToStart ? 0 : array.size());
    auto rank = [&](const Element& element) {
        auto found = std::ranges::find(order, element);
        return found == order.end() ? fallback : std::distance(order.begin(), found);
    };
    std::sort(array.begin(), array.end(), [&](const Element& a, const Element& b) { return rank(a) < rank(b); });
}

template <class Element>
std::vector<Element> sorted(std::vector<Element> array, const std::vector<Element>& order, bool unknownToStart) {
    sort(array, order, unknownToStart);
    return array;
}

// What an optional-like value holds, as a std::optional.
template <class Value>
std::optional<Value> asOptional(const std::optional<Value>& value) {
    return value;
}

template <class Value>
concept OptionalConvertible = requires(const Value& value) { asOptional(value); };

// The present values in order, absent ones dropped.
template <std::ranges::input_range Sequence>
    requires OptionalConvertible<std::ranges::range_value_t<Sequence>>
auto compacted(const Sequence& sequence) {
    using Wrapped = typename decltype(asOptional(*std::ranges::begin(sequence)))::value_type;
    std::vector<Wrapped> present;
    for (const auto& element : sequence) {
        if (auto value = asOptional(element)) present.push_back(std::move(*value));
    }
    return present;
}

}  // namespace vantel
