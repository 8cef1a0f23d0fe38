#pragma once

#include <Graphics2/CGContext.hpp>
#include <Graphics2/Color.hpp>
#include <Graphics2/GroupDrawable.hpp>
#include <Graphics2/Rectangle.hpp>
#include <Graphics2/Size.hpp>
#include <OverlayGenerator/GridType.hpp>
#include <Platform/Coding.hpp>
#include <Platform/UUID.hpp>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vantel {

// One aspect-ratio guide of an overlay document: the largest rectangle of
// width:height that fits its parent (the canvas inside the margin, or the
// parent guide), outlined in `color` at `weight`, filled with `fillColor`,
// optionally crossed by grid lines and holding nested guides.
//
// Coded as a dictionary with the keys named like the fields. "id", "width",
// "height", "color" and "weight" are required when decoding (the defaults
// below apply only to guides made in code); "fillColor", "rowType",
// "columnType" and "clearParent" fall back to their defaults through
// DecodableDefault; "children" may be absent. Encoding writes every key, and
// "children" only when the guide has a list of them.
struct AspectRatio {
    UUID id = UUID::random();
    double width = 0;
    double height = 0;
    Color color = Color::black();
    Color fillColor = Color::clear();
    double weight = 2.0;
    GridType rowType = GridType::none();
    GridType columnType = GridType::none();
    bool clearParent = true;
    std::optional<std::vector<AspectRatio>> children;

    // A new guide with a fresh id and clearParent set. Integer sizes convert.
    AspectRatio(double width, double height, Color color, Color fillColor, double weight,
                GridType rowType, GridType columnType,
                std::optional<std::vector<AspectRatio>> children);

    static AspectRatio decode(const Decoder& decoder);
    void encode(Encoder& encoder) const;

    // ---- layout

    double ratio() const { return width / height; }
    // Swaps width and height; children keep their own.
    void rotate();
    // The largest size of this ratio inside `size` less its margins, margin 0.
    // A comparison with NaN falls to the width-limited branch.
    Size fitting(const Size& size) const;

    // Where the guide's outline lies, its outer edges: the fitted size
    // centred on the centre of `centeringSize`, as drawing() places it.
    CGRect box(const Size& fittingSize, const Size& centeringSize) const;
    // The rectangle drawing() strokes and lays the grid on: the box shrunk by
    // one stroke width, so that the stroke reaches exactly the box. The
    // document checks measure grids on it too.
    Rectangle outline(const Size& fittingSize, const Size& centeringSize) const;

    // The guide laid out as a group: [styled Grid, FauxDrawable, children,
    // FauxDrawable]. The guide is fitted into `fittingSize` and centred on the
    // centre of `centeringSize`; each child is fitted into this guide's fitted
    // box (before the stroke shrinks the rectangle) and centred on the same
    // centre, wrapped in a one-element group. Pure: safe on any thread.
    GroupDrawable drawing(const Size& fittingSize, const Size& centeringSize) const;
    // The same against this thread's layout state (below); stops the process
    // when either size is unset.
    GroupDrawable drawing() const;

    // ---- text forms and presets

    // "Ratio 16.0 ∶ 9.0"
    std::string description() const;
    // Symbol names for a landscape, portrait or square guide.
    std::string icon() const;
    std::string iconFill() const;

    // "16∶9": both sides in the default locale's number format around U+2236.
    struct FormatStyle {
        static FormatStyle aspectRatio() { return {}; }
        std::string format(const AspectRatio& ratio) const;

        static FormatStyle decode(const Decoder& decoder);
        void encode(Encoder& encoder) const;
        friend bool operator==(const FormatStyle&, const FormatStyle&) = default;
    };
    std::string formatted(const FormatStyle& style = FormatStyle::aspectRatio()) const {
        return style.format(*this);
    }

    // Where preset guides take their colours from; the plain overloads draw
    // from the preset palette with the system's random source.
    using ColorSource = std::function<Color()>;
    static const std::vector<Color>& presetPalette();
    static Color randomPaletteColor();

    // A 1:1 guide of weight 10, clear fill, no grid. (`default` is a keyword.)
    static AspectRatio defaultGuide();
    static AspectRatio defaultGuide(const ColorSource& nextColor);
    // A 16:9 guide holding a 4:3 child, then a 9:16 guide in thirds; colours
    // are drawn in that order.
    static std::vector<AspectRatio> test();
    static std::vector<AspectRatio> test(const ColorSource& nextColor);

    friend bool operator==(const AspectRatio&, const AspectRatio&) = default;

private:
    AspectRatio() = default;  // the field defaults, where decoding starts
};

// Layout state kept for callers that lay guides out without passing sizes:
// the size the next guide is fitted into, and the size whose centre every
// guide is centred on. Both start unset. A document body sets both to its
// size and leaves them so. They are per thread, so bodies built on different
// threads at once never share them. constinit: they need no dynamic
// initialisation, so other files reach them directly rather than through a
// thread-local wrapper function.
extern constinit thread_local std::optional<Size> fittingSize;
extern constinit thread_local std::optional<Size> centeringSize;

}  // namespace vantel

template <>
struct std::hash<vantel::AspectRatio> {
    std::size_t operator()(const vantel::AspectRatio& ratio) const noexcept;
};

template <>
struct std::hash<vantel::AspectRatio::FormatStyle> {
    std::size_t operator()(const vantel::AspectRatio::FormatStyle&) const noexcept { return 0; }
};
