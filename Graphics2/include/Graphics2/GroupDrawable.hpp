#pragma once

#include <Graphics2/Drawable.hpp>

#include <concepts>
#include <type_traits>
#include <vector>

namespace vantel {

// Drawables in drawing order. Generic outputs see the group flattened into
// its leaves; raster drawing draws each raster member in turn.
struct GroupDrawable {
    std::vector<Drawable> shapes;

    GroupDrawable() = default;
    explicit GroupDrawable(std::vector<Drawable> shapes) : shapes(std::move(shapes)) {}

    // A group of exactly one element, the content's result.
    template <class Content>
        requires std::invocable<Content&> &&
                 std::convertible_to<std::invoke_result_t<Content&>, Drawable>
    explicit GroupDrawable(Content&& content) : shapes{Drawable(content())} {}

    void draw(DrawingContext& context) const;
    // Members' raster drawing only (never their debug drawing), without
    // saving state: whatever one member leaves in the context the next sees.
    void draw(CGContext& context) const;
    // One member: its element, unwrapped. More: a "g" of the members that
    // yield elements. An empty group is a programming error.
    std::optional<XMLElement> svgElement() const;
};

}  // namespace vantel
