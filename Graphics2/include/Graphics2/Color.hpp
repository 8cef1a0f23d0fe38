#pragma once

#include <Graphics2/ColorKeywords.hpp>
#include <Platform/Coding.hpp>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantel {

// An RGBA colour, components nominally in 0...1 and not premultiplied.
//
// Every constructor keeps the components inside 0...1 with one clamp: a value
// at or below 0 becomes 0, then a value above 1 becomes 1, and NaN passes
// through. Two ways in deliberately skip it: decoding stores what it reads,
// and fromHexString(text, alpha) stores alpha as given.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;

    Color() = default;  // transparent black, the same value as clear()
    Color(double red, double green, double blue, double alpha);

    // Red, green and blue on the 0...255 scale; out-of-range values clamp
    // after dividing by 255 rather than being rejected.
    static Color rgb255(int red, int green, int blue, double alpha);
    static Color grey(double grey, double alpha);

    // "#RRGGBB" or "#RRGGBBAA" after trimming white space and dropping every
    // "#". A pair that is not hexadecimal reads as 0 (a leading-digit prefix
    // such as "1G" reads as 1). Fewer than six characters is a programming
    // error and stops the process.
    static Color fromHexString(std::string_view text);
    // Like fromHexString(text), but alpha is taken as given, unclamped, and
    // anything after the sixth character is ignored.
    static Color fromHexString(std::string_view text, double alpha);

    // Empty: black; one value: a grey; two: a grey with alpha; three: red,
    // green, blue; four or more: red, green, blue, alpha (the rest ignored).
    static Color fromComponents(const std::vector<double>& components);

    // The CSS keyword of exactly this spelling (case-sensitive, untrimmed).
    static std::optional<Color> named(std::string_view name);

    static const Color& clear();
#define VANTEL_DECLARE_COLOR_KEYWORD(accessor, keyword, hex) static const Color& accessor();
    VANTEL_COLOR_KEYWORDS(VANTEL_DECLARE_COLOR_KEYWORD)
#undef VANTEL_DECLARE_COLOR_KEYWORD

    // (red + green + blue) / 3, alpha ignored.
    double greyLevel() const;
    Color withAlpha(double alpha) const;
    Color withoutAlpha() const;

    std::string toHex() const;   // "#FF8000": each component times 255, rounded half away from zero
    std::string toRGBA() const;  // "rgba(255,128,0,0.3)": alpha written unscaled

    // Keys "red", "green", "blue", "alpha", all required.
    static Color decode(const Decoder& decoder);
    void encode(Encoder& encoder) const;

    // Component-wise, so a colour holding NaN is unequal to itself.
    friend bool operator==(const Color&, const Color&) = default;
};

}  // namespace vantel

template <>
struct std::hash<vantel::Color> {
    std::size_t operator()(const vantel::Color& color) const noexcept;
};
