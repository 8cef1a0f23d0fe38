#include <Graphics2/Color.hpp>

#include <Graphics2/Numeric.hpp>
#include <Platform/Fatal.hpp>
#include <Platform/Graphemes.hpp>
#include <Platform/Hashing.hpp>
#include <Platform/NumberText.hpp>
#include <Platform/UnicodeText.hpp>

#include <cmath>
#include <cstdio>
#include <unordered_map>

namespace vantel {
namespace {

// ------------------------------------------------------------ hexadecimal text

int hexDigitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// A prefix scan: leading white space, an optional 0x, then as many hex
// digits as follow. No digit at all reads as 0 rather than failing.
double scanHexComponent(std::string_view slice) {
    while (!slice.empty()) {
        DecodedCodePoint next = decodeCodePoint(slice, 0);
        if (!isWhiteSpaceOrNewline(next.value)) break;
        slice.remove_prefix(next.length);
    }
    if (slice.starts_with("0x") || slice.starts_with("0X")) slice.remove_prefix(2);
    unsigned long value = 0;
    for (char c : slice) {
        int digit = hexDigitValue(c);
        if (digit < 0) break;
        value = value * 16 + static_cast<unsigned long>(digit);
    }
    return static_cast<double>(value) / 255.0;
}

// The text after trimming and removing every "#", cut into characters.
struct HexCharacters {
    std::string text;
    std::vector<std::string_view> characters;

    explicit HexCharacters(std::string_view input) {
        for (char c : trimmingWhiteSpaceAndNewlines(input)) {
            if (c != '#') text += c;
        }
        characters = graphemeClusters(text);
        if (characters.size() < 6) {
            fatalError("Hexadecimal colour text needs at least six digits: \"" + std::string(input) + "\"");
        }
    }
    HexCharacters(const HexCharacters&) = delete;  // the views point into text

    // The component held by the two characters starting at offset.
    double component(size_t offset) const {
        std::string_view first = characters[offset];
        std::string_view second = characters[offset + 1];
        size_t length = static_cast<size_t>(second.data() + second.size() - first.data());
        return scanHexComponent(std::string_view(first.data(), length));
    }

    // Red, green and blue read from the text, alpha stored as given.
    Color color(double alpha) const {
        Color color;
        color.red = component(0);
        color.green = component(2);
        color.blue = component(4);
        color.alpha = alpha;
        return color;
    }
};

}  // namespace

// ------------------------------------------------------------ construction

Color::Color(double red, double green, double blue, double alpha)
    : red(clamped(red, 0, 1)), green(clamped(green, 0, 1)), blue(clamped(blue, 0, 1)), alpha(clamped(alpha, 0, 1)) {}

Color Color::rgb255(int red, int green, int blue, double alpha) {
    return Color(red / 255.0, green / 255.0, blue / 255.0, alpha);
}

Color Color::grey(double grey, double alpha) {
    return Color(grey, grey, grey, alpha);
}

Color Color::fromHexString(std::string_view text) {
    HexCharacters hex(text);
    return hex.color(hex.characters.size() == 8 ? hex.component(6) : 1);
}

Color Color::fromHexString(std::string_view text, double alpha) {
    return HexCharacters(text).color(alpha);
}

Color Color::fromComponents(const std::vector<double>& c) {
    switch (c.size()) {
    case 0: return black();
    case 1: return grey(c[0], 1);
    case 2: return grey(c[0], c[1]);
    case 3: return Color(c[0], c[1], c[2], 1);
    default: return Color(c[0], c[1], c[2], c[3]);
    }
}

// ------------------------------------------------------------ named colours

const Color& Color::clear() {
    static const Color color(0, 0, 0, 0);
    return color;
}

#define VANTEL_DEFINE_COLOR_KEYWORD(accessor, keyword, hex) \
    const Color& Color::accessor() {                        \
        static const Color color = fromHexString(hex);      \
        return color;                                       \
    }
VANTEL_COLOR_KEYWORDS(VANTEL_DEFINE_COLOR_KEYWORD)
#undef VANTEL_DEFINE_COLOR_KEYWORD

std::optional<Color> Color::named(std::string_view name) {
    using Accessor = const Color& (*)();
    static const std::unordered_map<std::string_view, Accessor> keywords = {
#define VANTEL_COLOR_KEYWORD_ENTRY(accessor, keyword, hex) {keyword, &Color::accessor},
        VANTEL_COLOR_KEYWORDS(VANTEL_COLOR_KEYWORD_ENTRY)
#undef VANTEL_COLOR_KEYWORD_ENTRY
    };
    auto found = keywords.find(name);
    if (found == keywords.end()) return std::nullopt;
    return found->second();
}

// ------------------------------------------------------------ derived values

double Color::greyLevel() const {
    return (red + green + blue) / 3;
}

Color Color::withAlpha(double alpha) const {
    return Color(red, green, blue, alpha);
}

Color Color::withoutAlpha() const {
    return Color(red, green, blue, 1);
}

std::string Color::toHex() const {
    char text[64];
    std::snprintf(text, sizeof text, "#%02lX%02lX%02lX", std::lround(red * 255),
                  std::lround(green * 255), std::lround(blue * 255));
    return text;
}

std::string Color::toRGBA() const {
    return "rgba(" + std::to_string(std::lround(red * 255)) + "," +
           std::to_string(std::lround(green * 255)) + "," +
           std::to_string(std::lround(blue * 255)) + "," + numberText(alpha) + ")";
}

// ------------------------------------------------------------ coding

Color Color::decode(const Decoder& decoder) {
    KeyedDecodingContainer container = decoder.container();
    Color color;
    color.red = container.decode<double>("red");
    color.green = container.decode<double>("green");
    color.blue = container.decode<double>("blue");
    color.alpha = container.decode<double>("alpha");
    return color;
}

void Color::encode(Encoder& encoder) const {
    KeyedEncodingContainer container = encoder.container();
    container.encode(red, "red");
    container.encode(green, "green");
    container.encode(blue, "blue");
    container.encode(alpha, "alpha");
}

}  // namespace vantel

std::size_t std::hash<vantel::Color>::operator()(const vantel::Color& color) const noexcept {
    return vantel::hashOfFields(color.red, color.green, color.blue, color.alpha);
}
