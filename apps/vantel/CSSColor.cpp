#include "CSSColor.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace vantel::cli {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return lower;
}

double clamped(double value) { return std::clamp(value, 0.0, 1.0); }

// ---- #rgb, #rgba, #rrggbb, #rrggbbaa

std::optional<Color> hexColor(std::string_view digits) {
    const std::size_t length = digits.size();
    if (length != 3 && length != 4 && length != 6 && length != 8) return std::nullopt;
    if (!std::all_of(digits.begin(), digits.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); })) {
        return std::nullopt;
    }
    const std::size_t width = length <= 4 ? 1 : 2;  // #f80 is #ff8800
    std::array<double, 4> channels{0, 0, 0, 1};
    for (std::size_t i = 0; i * width < length; ++i) {
        unsigned value = 0;
        std::from_chars(digits.data() + i * width, digits.data() + (i + 1) * width, value, 16);
        channels[i] = (width == 1 ? value * 17 : value) / 255.0;
    }
    return Color(channels[0], channels[1], channels[2], channels[3]);
}

// ---- numbers with units

struct Dimension {
    double value = 0;
    std::string unit;  // lower case; "" for a plain number
};

std::size_t digitsEnd(std::string_view text, std::size_t from) {
    while (from < text.size() && isDigit(text[from])) ++from;
    return from;
}

// Where the CSS number at the start of `token` ends (0 when there is none):
// a sign, digits with at most one point, an exponent. Not "inf", "nan" or hex.
std::size_t numberEnd(std::string_view token) {
    std::size_t at = !token.empty() && (token[0] == '+' || token[0] == '-') ? 1 : 0;
    std::size_t end = digitsEnd(token, at);
    bool hasDigits = end > at;
    if (end < token.size() && token[end] == '.') {
        std::size_t fraction = digitsEnd(token, end + 1);
        if (fraction == end + 1) return 0;
        hasDigits = true;
        end = fraction;
    }
    if (!hasDigits) return 0;
    if (end < token.size() && (token[end] == 'e' || token[end] == 'E')) {
        std::size_t exponent = end + 1;
        if (exponent < token.size() && (token[exponent] == '+' || token[exponent] == '-')) ++exponent;
        if (std::size_t exponentEnd = digitsEnd(token, exponent); exponentEnd > exponent) end = exponentEnd;
    }
    return end;
}

std::optional<Dimension> dimension(std::string_view token) {
    const std::size_t end = numberEnd(token);
    if (end == 0) return std::nullopt;
    const std::size_t sign = token[0] == '+' ? 1 : 0;  // from_chars takes no "+"
    double value = 0;
    auto [stop, error] = std::from_chars(token.data() + sign, token.data() + end, value);
    if (error != std::errc() || stop != token.data() + end || !std::isfinite(value)) return std::nullopt;
    return Dimension{value, lowerCase(token.substr(end))};
}

std::optional<double> rgbChannel(std::string_view token) {
    std::optional<Dimension> given = dimension(token);
    if (!given) return std::nullopt;
    if (given->unit.empty()) return clamped(given->value / 255);
    if (given->unit == "%") return clamped(given->value / 100);
    return std::nullopt;
}

std::optional<double> alphaChannel(std::string_view token) {
    std::optional<Dimension> given = dimension(token);
    if (!given) return std::nullopt;
    if (given->unit.empty()) return clamped(given->value);
    if (given->unit == "%") return clamped(given->value / 100);
    return std::nullopt;
}

// Saturation and lightness: percentages, or the same numbers without "%".
std::optional<double> fraction(std::string_view token) {
    std::optional<Dimension> given = dimension(token);
    if (!given || (!given->unit.empty() && given->unit != "%")) return std::nullopt;
    return clamped(given->value / 100);
}

std::optional<double> hueDegrees(std::string_view token) {
    std::optional<Dimension> given = dimension(token);
    if (!given) return std::nullopt;
    if (given->unit.empty() || given->unit == "deg") return given->value;
    if (given->unit == "rad") return given->value * 180 / std::numbers::pi;
    if (given->unit == "grad") return given->value * 0.9;
    if (given->unit == "turn") return given->value * 360;
    return std::nullopt;
}

// ---- rgb(), rgba(), hsl(), hsla()

std::vector<std::string_view> words(std::string_view text) {
    std::vector<std::string_view> found;
    while (!(text = trimmed(text)).empty()) {
        std::size_t end = 0;
        while (end < text.size() && !isBlank(text[end])) ++end;
        found.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return found;
}

// "a, b, c[, d]" or "a b c[ / d]": three or four single-word arguments.
std::optional<std::vector<std::string_view>> arguments(std::string_view inside) {
    std::vector<std::string_view> found;
    if (inside.find(',') != std::string_view::npos) {
        for (std::size_t start = 0;;) {
            std::size_t comma = std::min(inside.find(',', start), inside.size());
            std::vector<std::string_view> piece = words(inside.substr(start, comma - start));
            if (piece.size() != 1) return std::nullopt;
            found.push_back(piece.front());
            if (comma == inside.size()) break;
            start = comma + 1;
        }
    } else {
        std::size_t slash = inside.find('/');
        found = words(inside.substr(0, slash));
        if (found.size() != 3) return std::nullopt;
        if (slash != std::string_view::npos) {
            std::vector<std::string_view> alpha = words(inside.substr(slash + 1));
            if (alpha.size() != 1) return std::nullopt;
            found.push_back(alpha.front());
        }
    }
    if (found.size() < 3 || found.size() > 4) return std::nullopt;
    return found;
}

std::optional<double> alphaOf(const std::vector<std::string_view>& arguments) {
    return arguments.size() == 4 ? alphaChannel(arguments[3]) : std::optional<double>(1.0);
}

std::optional<Color> rgbColor(const std::vector<std::string_view>& arguments) {
    auto red = rgbChannel(arguments[0]), green = rgbChannel(arguments[1]), blue = rgbChannel(arguments[2]);
    auto alpha = alphaOf(arguments);
    if (!red || !green || !blue || !alpha) return std::nullopt;
    return Color(*red, *green, *blue, *alpha);
}

std::optional<Color> hslColor(const std::vector<std::string_view>& arguments) {
    auto hue = hueDegrees(arguments[0]);
    auto saturation = fraction(arguments[1]), lightness = fraction(arguments[2]);
    auto alpha = alphaOf(arguments);
    if (!hue || !saturation || !lightness || !alpha) return std::nullopt;
    const double h = *hue, s = *saturation, l = *lightness;
    auto channel = [&](double n) {
        double k = std::fmod(n + h / 30, 12);
        if (k < 0) k += 12;
        double a = s * std::min(l, 1 - l);
        return l - a * std::max(-1.0, std::min({k - 3, 9 - k, 1.0}));
    };
    return Color(channel(0), channel(8), channel(4), *alpha);
}

std::optional<Color> functionColor(std::string_view lower) {
    const std::size_t open = lower.find('(');
    if (open == std::string_view::npos || lower.back() != ')') return std::nullopt;
    std::optional<std::vector<std::string_view>> given = arguments(lower.substr(open + 1, lower.size() - open - 2));
    if (!given) return std::nullopt;
    const std::string_view name = lower.substr(0, open);
    if (name == "rgb" || name == "rgba") return rgbColor(*given);
    if (name == "hsl" || name == "hsla") return hslColor(*given);
    return std::nullopt;
}

std::optional<Color> keywordColor(const std::string& lower) {
    if (lower == "transparent") return Color::clear();
    // The library's keyword table gives seashell seagreen's value, a quirk it
    // keeps; typed here, the keyword means what it means to every CSS tool.
    if (lower == "seashell") return Color::rgb255(0xFF, 0xF5, 0xEE, 1);
    if (lower == "rebeccapurple") return Color::rgb255(0x66, 0x33, 0x99, 1);
    return Color::named(lower);
}

}  // namespace

std::optional<Color> cssColor(std::string_view text) {
    const std::string lower = lowerCase(trimmed(text));
    if (lower.empty()) return std::nullopt;
    if (lower.front() == '#') return hexColor(std::string_view(lower).substr(1));
    if (lower.back() == ')') return functionColor(lower);
    return keywordColor(lower);
}

}  // namespace vantel::cli
