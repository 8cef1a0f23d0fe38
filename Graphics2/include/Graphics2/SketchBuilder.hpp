#pragma once

#include <Graphics2/Drawable.hpp>
#include <Graphics2/EmptyDrawable.hpp>
#include <Graphics2/GroupDrawable.hpp>

#include <concepts>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace vantel {

namespace detail {
// Two or more components, all of one drawable type (not Drawable itself).
template <class First, class... Rest>
concept SameDrawableValues = sizeof...(Rest) >= 1 && DrawableValue<std::remove_cvref_t<First>> &&
                             (std::same_as<std::remove_cvref_t<First>, std::remove_cvref_t<Rest>> && ...);
}  // namespace detail

// The steps of declarative sketch assembly: what a block of components,
// a loop and an optional component become.
struct SketchBuilder {
    static EmptyDrawable buildBlock() { return {}; }

    template <DrawableValue T>
    static T buildBlock(T component) { return component; }
    static Drawable buildBlock(Drawable component) { return component; }

    template <class Content>
        requires std::invocable<Content&>
    static auto buildBlock(Content&& content) { return content(); }

    // Components of one type stay a plain array of that type.
    template <DrawableValue T, class... Rest>
        requires detail::SameDrawableValues<T, Rest...>
    static std::vector<T> buildBlock(T first, Rest... rest) {
        return {std::move(first), std::move(rest)...};
    }

    // Components of mixed types (or already erased ones) become a group.
    template <class First, class Second, class... Rest>
        requires(!detail::SameDrawableValues<First, Second, Rest...> &&
                 std::convertible_to<First, Drawable> && std::convertible_to<Second, Drawable> &&
                 (std::convertible_to<Rest, Drawable> && ...))
    static GroupDrawable buildBlock(First&& first, Second&& second, Rest&&... rest) {
        return GroupDrawable(std::vector<Drawable>{Drawable(std::forward<First>(first)),
                                                   Drawable(std::forward<Second>(second)),
                                                   Drawable(std::forward<Rest>(rest))...});
    }

    // A loop's components; an absent list is an empty group.
    static GroupDrawable buildArray(std::vector<Drawable> components) {
        return GroupDrawable(std::move(components));
    }
    static GroupDrawable buildArray(std::optional<std::vector<Drawable>> components) {
        return GroupDrawable(components ? std::move(*components) : std::vector<Drawable>{});
    }

    // An `if` without a branch taken contributes an EmptyDrawable.
    static Drawable buildOptional(std::optional<Drawable> component) {
        return component ? std::move(*component) : Drawable(EmptyDrawable{});
    }
};

}  // namespace vantel
