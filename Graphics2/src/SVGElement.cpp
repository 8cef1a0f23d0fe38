#include <Graphics2/ColorKeywords.hpp>
#include <Graphics2/MatrixTransformation.hpp>
#include <Graphics2/SVGElement.hpp>
#include <Graphics2/Shape.hpp>
#include <Platform/Fatal.hpp>
#include <Platform/NumberText.hpp>

#include <string>

namespace vantel {

void addAttribute(XMLElement& element, std::string_view key, double value) {
    element.addAttribute(key, numberText(value));
}

void addAttribute(XMLElement& element, std::string_view key, const std::optional<Color>& color) {
    if (!color) {
        element.addAttribute(key, "none");
        return;
    }
    element.addAttribute(key, color->toHex());
    if (color->alpha != 1.0) addAttribute(element, std::string(key) + "-opacity", color->alpha);
}

void strokeColor(XMLElement& element, const std::optional<Color>& color) { addAttribute(element, "stroke", color); }
void fillColor(XMLElement& element, const std::optional<Color>& color) { addAttribute(element, "fill", color); }

void strokeWidth(XMLElement& element, std::optional<double> width) {
    if (width && *width != 1.0) addAttribute(element, "stroke-width", *width);
}

namespace {

std::string pointText(const Vector& point) { return numberText(point.x) + "," + numberText(point.y); }

std::string pointList(const std::vector<Vector>& points, std::size_t from = 0) {
    std::string text;
    for (std::size_t i = from; i < points.size(); ++i) {
        if (i > from) text += ' ';
        text += pointText(points[i]);
    }
    return text;
}

// Shapes are outlines: black, unfilled. Styles added later cannot change
// either, because the first value of an attribute wins.
void outline(XMLElement& element, bool filled = true) {
    strokeColor(element, Color::black());
    if (filled) fillColor(element, std::nullopt);
}

XMLElement polyline(const std::vector<Vector>& points) {
    XMLElement element("polyline");
    element.addAttribute("points", pointList(points));
    outline(element);
    return element;
}

void requireControlPoints(const BezierPath& path) {
    if (path.controlPoints.empty()) fatalError("BezierPath needs at least one control point");
}

}  // namespace

std::optional<XMLElement> Circle::svgElement() const {
    XMLElement element("circle");
    addAttribute(element, "cx", center.x);
    addAttribute(element, "cy", center.y);
    addAttribute(element, "r", radius);
    outline(element);
    return element;
}

std::optional<XMLElement> Line::svgElement() const {
    XMLElement element("line");
    addAttribute(element, "x1", start.x);
    addAttribute(element, "y1", start.y);
    addAttribute(element, "x2", end.x);
    addAttribute(element, "y2", end.y);
    outline(element, false);
    return element;
}

std::optional<XMLElement> Rectangle::svgElement() const {
    const Vector corner = MatrixTransformation::translate(origin.x, origin.y) * Vector(-width / 2, -height / 2, 1);
    XMLElement element("rect");
    addAttribute(element, "x", corner.x);
    addAttribute(element, "y", corner.y);
    addAttribute(element, "width", width);
    addAttribute(element, "height", height);
    if (rotation.degrees != 0) {
        element.addAttribute("transform", "rotate(" + numberText(rotation.degrees) + "," + numberText(origin.x) +
                                              "," + numberText(origin.y) + ")");
    }
    outline(element);
    return element;
}

std::optional<XMLElement> Path::svgElement() const { return polyline(points); }

std::optional<XMLElement> BezierPath::svgElement() const {
    requireControlPoints(*this);
    if (controlPoints.size() > 4) return polyline(sampledPoints(*this, 0.01));
    std::string data = "M " + pointText(controlPoints.front()) + (controlPoints.size() < 4 ? " Q " : " C ") +
                       pointList(controlPoints, 1);
    XMLElement element("path");
    element.addAttribute("d", data);
    outline(element);
    return element;
}

std::optional<XMLElement> BezierPath::debugSVG() const {
    requireControlPoints(*this);
    XMLElement group("g");
    group.addChild(polyline(controlPoints));
    group.addChild(*svgElement());
    return group;
}

std::optional<XMLElement> GroupDrawable::svgElement() const {
    if (shapes.empty()) fatalError("An empty group has no SVG element");
    if (shapes.size() == 1) return shapes.front().svgElement();
    XMLElement group("g");
    for (const auto& shape : shapes) {
        if (auto element = shape.svgElement()) group.addChild(std::move(*element));
    }
    return group;
}

std::optional<XMLElement> StyledShape::svgElement() const {
    auto element = shape.svgElement();
    if (!element) return std::nullopt;
    auto style = [this](XMLElement& target) {
        vantel::strokeColor(target, strokeColor);
        vantel::strokeWidth(target, strokeWidth);
        vantel::fillColor(target, fillColor);
    };
    if (element->childCount() == 0) {
        style(*element);
    } else {
        for (auto& child : element->children()) style(child);
    }
    return element;
}

}  // namespace vantel
