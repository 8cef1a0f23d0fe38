#pragma once

#include <Graphics2/Drawable.hpp>
#include <Graphics2/DrawingContext.hpp>
#include <Graphics2/SVGAttribute.hpp>
#include <Graphics2/Sketch.hpp>
#include <Platform/URL.hpp>
#include <Platform/XML.hpp>

#include <concepts>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace vantel {

// A concrete value that is an SVG drawable in its own right (a Drawable
// wrapper is handled by the DrawingContext overload instead).
template <class T>
concept SVGDrawable = !std::same_as<std::remove_cvref_t<T>, Drawable> && detail::DrawsSVG<std::remove_cvref_t<T>>;

// One SVG document built from drawables: the root "svg" element with width,
// height and the SVG and Inkscape namespaces, every shape's element appended
// in order, optional Inkscape layers, and serialisation to text or a file.
// Shared by whoever adds shapes to it, so it is not copyable; not locked.
class SVGContext : public DrawingContext {
public:
    SVGContext(std::int64_t width, std::int64_t height, bool debug = false);
    // The shapes added in order, silently.
    template <SVGDrawable... Shapes>
    SVGContext(std::int64_t width, std::int64_t height, bool debug, const Shapes&... shapes)
        : SVGContext(width, height, debug) {
        addShapes(shapes...);
    }
    // Each drawable added as by addShape(const Drawable&).
    SVGContext(std::int64_t width, std::int64_t height, bool debug, const std::vector<Drawable>& shapes);
    // The sketch's size truncated to integers (a size without an integer
    // value is a programming error), then its body.
    explicit SVGContext(const Sketch& sketch, bool debug = false);
    SVGContext(const SVGContext&) = delete;
    SVGContext& operator=(const SVGContext&) = delete;

    XMLElement svg() const { return document_.root(); }  // a view of the root
    std::int64_t width() const { return width_; }
    std::int64_t height() const { return height_; }
    // Applies to shapes added from now on: their debug rendering instead.
    bool debug = false;

    // Appends the shape's element (or its debug element) to the root;
    // a shape that yields nothing adds nothing.
    template <SVGDrawable Shape>
    void addShape(const Shape& shape) {
        if constexpr (detail::DrawsSVGDebug<Shape>) append(debug ? shape.debugSVG() : shape.svgElement());
        else append(shape.svgElement());
    }
    template <SVGDrawable... Shapes>
    void addShapes(const Shapes&... shapes) {
        (addShape(shapes), ...);
    }
    template <SVGDrawable Shape>
    void addShapes(const std::vector<Shape>& shapes) {
        for (const auto& shape : shapes) addShape(shape);
    }
    // Prints "Adding <Type> to SVG" for every SVG drawable it adds, a
    // trace people use to follow a sketch; other drawables are skipped.
    void addShape(const Drawable& shape) override;

    // Moves the root's elements into Inkscape layers, one "g" per value of
    // the attribute (missing counts as ""), labelled "<n>-<value>" in the
    // order the layers come out, which is a hash map's and not the order
    // of first sight. A root with text among its children is left alone.
    void groupElements(SVGAttribute attribute);
    // Replaces every "g" child of the root by its children, one level deep.
    void breakGroups();

    // The document around the root: the same tree, not a copy.
    const XMLDocument& makeDoc() const { return document_; }
    std::string svgString(bool pretty = false) const;

    // Pretty printed, the folder made first, written atomically; failures
    // throw std::filesystem::filesystem_error. Only file URLs are written:
    // a web address throws before anything is made.
    void writeSVG(const URL& url) const;
    void writeSVG(const std::filesystem::path& path) const;
    // folder[/SVG]/name, with ".svg" appended unless the name's extension
    // is exactly "svg" (so "plan.SVG" becomes "plan.SVG.svg"). The name is
    // one file inside the folder: empty, ".", "..", or holding "/" or NUL,
    // it throws.
    void writeSVG(std::string_view name, const URL& folder, bool includeSubDir) const;

private:
    void append(std::optional<XMLElement> element);

    XMLDocument document_;
    std::int64_t width_;
    std::int64_t height_;
};

}  // namespace vantel
