#pragma once

#include <Graphics2/Color.hpp>
#include <Platform/Coding.hpp>

#include <functional>

#include <string>
#include <string_view>

namespace vantel {

// A colour from the text a person types, attempts in this order:
//   1. text beginning with "#" (untrimmed test): Color::fromHexString, with its
//      stop for fewer than six hexadecimal characters;
//   2. text beginning with "rgb": the first "rgba?(...)" whose parentheses hold
//      only digits, commas and points; its numbers go to Color::fromComponents
//      on the 0...1 scale, so rgb(128,64,0) clamps to (1, 1, 0); no match is black;
//   3. otherwise the exact, case-sensitive keyword, or black when unknown.
// Nothing is reported for black: callers that must refuse bad text check
// isRecognisedColorText first.
Color colorFromText(std::string_view text);

// Whether colorFromText would read `text` as written rather than falling back
// to black or stopping the process: a "#" text with at least six characters,
// an rgb text that matches, or a known keyword.
bool isRecognisedColorText(std::string_view text);

// How a colour is written back as text.
struct ColorFormatStyle {
    enum class Format { hex, hexAlpha, rgba };
    Format format = Format::hex;

    static ColorFormatStyle hex() { return {Format::hex}; }
    static ColorFormatStyle hexAlpha() { return {Format::hexAlpha}; }
    static ColorFormatStyle rgba() { return {Format::rgba}; }

    // hex: "#FF8000"; hexAlpha: "#FF80004D"; rgba: "rgba(255,128,0,0.3)".
    // Components times 255, rounded half away from zero.
    std::string formatted(const Color& color) const;

    // Saved as {"format": {"<case>": {}}}. Decoding fails with a
    // typeMismatch "Invalid number of keys found, expected one." when the
    // format holds no key or several, and with dataCorrupted for one key
    // that names no format.
    static ColorFormatStyle decode(const Decoder& decoder);
    void encode(Encoder& encoder) const;

    friend bool operator==(const ColorFormatStyle&, const ColorFormatStyle&) = default;
};

}  // namespace vantel

template <>
struct std::hash<vantel::ColorFormatStyle> {
    std::size_t operator()(const vantel::ColorFormatStyle& style) const noexcept {
        return std::hash<int>{}(static_cast<int>(style.format));
    }
};
