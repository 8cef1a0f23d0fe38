#include <Graphics2/ColorText.hpp>

#include <Platform/Fatal.hpp>
#include <Platform/RegularExpression.hpp>
#include <Platform/UnicodeText.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>
#include <vector>

namespace vantel {

namespace {

// The capture holds digits, commas and points only; prefix and suffix text
// around the first match is ignored on purpose.
std::optional<std::string> rgbComponentsText(std::string_view text) {
    static const std::optional<RegularExpression> rgbForm = RegularExpression::compile(R"(rgba?\(([\d,\.]+)\))");
    if (!rgbForm) fatalError("the rgb() pattern does not compile");
    std::optional<RegularExpression::Match> match = rgbForm->firstMatch(text, 0, utf16Length(text));
    if (!match || !(*match)[1]) return std::nullopt;
    return RegularExpression::substring(text, *(*match)[1]);
}

// from_chars reads in the C locale whatever the process locale. A number
// too large or too small for a double reads as strtod reads it, infinity or
// 0 (the piece has no sign or exponent: a non-zero digit before the point
// makes it at least 1, so out of range means too large).
std::optional<double> wholePieceNumber(std::string_view piece) {
    double value = 0;
    auto [end, error] = std::from_chars(piece.data(), piece.data() + piece.size(), value);
    if (piece.empty() || end != piece.data() + piece.size()) return std::nullopt;
    if (error == std::errc()) return value;
    if (error != std::errc::result_out_of_range) return std::nullopt;
    std::string_view whole = piece.substr(0, piece.find('.'));
    bool atLeastOne = whole.find_first_not_of('0') != std::string_view::npos;
    return atLeastOne ? std::numeric_limits<double>::infinity() : 0.0;
}

// Empty pieces are dropped and a piece that is not wholly a number (1.2.3)
// is skipped.
std::vector<double> numbersBetweenCommas(std::string_view list) {
    std::vector<double> numbers;
    while (!list.empty()) {
        size_t comma = list.find(',');
        if (auto value = wholePieceNumber(list.substr(0, comma))) numbers.push_back(*value);
        list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
    }
    return numbers;
}

// Counted the way Color::fromHexString counts before it stops the process:
// user-perceived characters after trimming and dropping every "#".
size_t hexCharactersAfterTrimming(std::string_view text) {
    std::string digits;
    for (char character : trimmingWhiteSpaceAndNewlines(text)) {
        if (character != '#') digits += character;
    }
    return graphemeCount(digits);
}

long scaled(double component) { return std::lround(component * 255); }

}  // namespace

Color colorFromText(std::string_view text) {
    if (text.starts_with('#')) return Color::fromHexString(text);
    if (text.starts_with("rgb")) {
        std::optional<std::string> components = rgbComponentsText(text);
        if (!components) return Color::black();
        return Color::fromComponents(numbersBetweenCommas(*components));
    }
    return Color::named(text).value_or(Color::black());
}

bool isRecognisedColorText(std::string_view text) {
    if (text.starts_with('#')) return hexCharactersAfterTrimming(text) >= 6;
    if (text.starts_with("rgb")) return rgbComponentsText(text).has_value();
    return Color::named(text).has_value();
}

std::string ColorFormatStyle::formatted(const Color& color) const {
    char text[64];
    switch (format) {
        case Format::hex:
            return color.toHex();
        case Format::hexAlpha:
            std::snprintf(text, sizeof text, "#%02lX%02lX%02lX%02lX", scaled(color.red), scaled(color.green),
                          scaled(color.blue), scaled(color.alpha));
            return text;
        case Format::rgba:
            return color.toRGBA();
    }
    return color.toHex();
}

namespace {

constexpr std::array<std::pair<std::string_view, ColorFormatStyle::Format>, 3> formatNames{{
    {"hex", ColorFormatStyle::Format::hex},
    {"hexAlpha", ColorFormatStyle::Format::hexAlpha},
    {"rgba", ColorFormatStyle::Format::rgba},
}};

ColorFormatStyle::Format decodeFormat(const Decoder& decoder) {
    KeyedDecodingContainer container = decoder.container();
    const std::string key = onlyCaseKey(container, "Format", container.allKeys());
    for (const auto& [name, format] : formatNames) {
        if (key != name) continue;
        container.nestedContainer(key);  // a case without values is still an empty container
        return format;
    }
    throw DecodingError::dataCorrupted(
        {container.codingPath(), "Unknown format \"" + key + "\"; expected hex, hexAlpha or rgba."});
}

}  // namespace

ColorFormatStyle ColorFormatStyle::decode(const Decoder& decoder) {
    return {decodeFormat(decoder.container().superDecoder("format"))};
}

void ColorFormatStyle::encode(Encoder& encoder) const {
    KeyedEncodingContainer formatContainer = encoder.container().nestedContainer("format");
    for (const auto& [name, value] : formatNames) {
        if (value == format) formatContainer.nestedContainer(name);
    }
}

}  // namespace vantel
