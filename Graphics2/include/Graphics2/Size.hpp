#pragma once

#include <Graphics2/CGContext.hpp>
#include <Graphics2/Rectangle.hpp>
#include <Graphics2/Vector.hpp>
#include <Platform/Coding.hpp>

#include <cstddef>
#include <functional>

namespace vantel {

// A page: width and height in drawing units and a margin kept free on every
// side. Nothing is validated or clamped; derived values follow IEEE rules.
struct Size {
    double width = 0;
    double height = 0;
    double margin = 0;

    Size() = default;
    Size(double width, double height, double margin);
    // Dimensions in inches at a resolution in drawing units per inch.
    static Size inches(double width, double height, double margin, double at);
    // Dimensions in millimetres: each value is divided by 25.4 first, then
    // multiplied by the resolution.
    static Size mm(double width, double height, double margin, double at);

    // The page centre as a point (z = 1).
    Vector center() const;
    Size landscape() const;
    Size portrait() const;
    double ratio() const;
    double marginRatio() const;
    double marginWidth() const;
    double marginHeight() const;
    double longSide() const;   // height when the sides are equal
    double shortSide() const;  // width when the sides are equal
    double minX() const;
    double minY() const;
    double maxX() const;
    double maxY() const;
    // The drawing area inside the margin, centred on the page.
    Rectangle boundingBox() const;
    // The page as the drawing context's size type; the margin is dropped.
    // `ns` is the same value under the platform's other name for it.
    CGSize cg() const { return {width, height}; }
    CGSize ns() const { return cg(); }

    // Keys "width", "height", "margin", all required.
    static Size decode(const Decoder& decoder);
    void encode(Encoder& encoder) const;

    friend bool operator==(const Size&, const Size&) = default;
};

}  // namespace vantel

template <>
struct std::hash<vantel::Size> {
    std::size_t operator()(const vantel::Size& size) const noexcept;
};
