#pragma once

#include <Graphics2/BezierPath.hpp>
#include <Graphics2/Circle.hpp>
#include <Graphics2/Color.hpp>
#include <Graphics2/GroupDrawable.hpp>
#include <Graphics2/Line.hpp>
#include <Graphics2/Path.hpp>
#include <Graphics2/Rectangle.hpp>
#include <Graphics2/StyledShape.hpp>
#include <Platform/XML.hpp>

#include <optional>
#include <string_view>

namespace vantel {

// Attribute helpers for SVG elements. As everywhere on XMLElement, the
// first value given for a name wins.

// The number as its shortest round-trip text ("10.0", "2.5").
void addAttribute(XMLElement& element, std::string_view key, double value);
// "none" when absent; else "#RRGGBB", plus "<key>-opacity" when alpha is
// not exactly 1.
void addAttribute(XMLElement& element, std::string_view key, const std::optional<Color>& color);
void strokeColor(XMLElement& element, const std::optional<Color>& color);
void fillColor(XMLElement& element, const std::optional<Color>& color);
// Nothing for an absent width or a width of exactly 1, SVG's default.
void strokeWidth(XMLElement& element, std::optional<double> width);

}  // namespace vantel
