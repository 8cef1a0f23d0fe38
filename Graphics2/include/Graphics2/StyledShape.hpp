#pragma once

#include <Graphics2/Color.hpp>
#include <Graphics2/Drawable.hpp>

#include <optional>

namespace vantel {

// One drawable with optional stroke colour, fill colour and stroke width.
// An absent style is not set at this level: the output decides, and for
// raster drawing it is whatever the enclosing state holds. Generic outputs
// receive the styled shape whole, never its inner shape on its own.
// Made by Drawable's strokeColor/fillColor/strokeWidth modifiers.
struct StyledShape {
    std::optional<Color> strokeColor;
    std::optional<Color> fillColor;
    std::optional<double> strokeWidth;
    Drawable shape;

    // Sets the present styles inside a saved state, draws the inner shape if
    // it is a raster drawable, and restores, so nothing leaks to later shapes.
    // The styled shape itself neither fills nor strokes.
    void draw(CGContext& context) const;
    // The inner shape's element with the style added after its own
    // attributes (to each child of a group instead). The shape's own
    // stroke and fill stay, since the first value of an attribute wins.
    std::optional<XMLElement> svgElement() const;
};

}  // namespace vantel
