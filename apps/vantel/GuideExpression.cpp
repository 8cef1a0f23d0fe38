#include "GuideExpression.hpp"

#include "CSSColor.hpp"
#include "UsageErrors.hpp"

#include <CLI/CLI.hpp>
#include <OverlayGenerator/DocumentCheck.hpp>

#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>

namespace vantel::cli {

namespace {

constexpr std::string_view ratioSign = "\u2236";

// The part of an expression an error is about, in double quotes on one line.
std::string quotedPart(std::string_view part) {
    std::string text = quotedOnOneLine(part);
    text.front() = text.back() = '"';
    return text;
}

class ExpressionError {
public:
    explicit ExpressionError(std::string reason) : reason(std::move(reason)) {}
    std::string reason;
};

template <class Number>
std::optional<Number> wholeNumber(std::string_view text) {
    Number value{};
    const char* end = text.data() + text.size();
    auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end) return std::nullopt;
    return value;
}

// A side of a ratio: a finite positive number small enough to draw.
double ratioSide(std::string_view text, std::string_view ratio) {
    const std::optional<double> side = wholeNumber<double>(text);
    if (!side || !std::isfinite(*side) || *side <= 0 || *side > DrawingLimits::maxRatioSide) {
        throw ExpressionError("bad ratio " + quotedPart(ratio) + "; give W:H with positive numbers, such as 16:9 or 2.39");
    }
    return *side;
}

std::pair<double, double> ratioSides(std::string_view text) {
    std::size_t separator = text.find(':');
    std::size_t separatorLength = 1;
    if (separator == std::string_view::npos) {
        separator = text.find(ratioSign);
        separatorLength = ratioSign.size();
    }
    if (separator == std::string_view::npos) return {ratioSide(text, text), 1.0};
    return {ratioSide(text.substr(0, separator), text), ratioSide(text.substr(separator + separatorLength), text)};
}

ExpressionError badGrid(std::string_view word) {
    return ExpressionError("bad grid " + quotedPart(word) + "; give grid=RxC or grid-px=N with whole numbers from 1");
}

std::int64_t gridCount(std::string_view text, std::string_view word) {
    const std::optional<std::int64_t> count = wholeNumber<std::int64_t>(text);
    if (!count || *count < 1) throw badGrid(word);
    return *count;
}

Color colorValue(std::string_view value, std::string_view word) {
    if (std::optional<Color> color = cssColor(value)) return *color;
    throw ExpressionError("bad colour " + quotedPart(word) + "; give a name, #rrggbb, rgb(), rgba(), hsl() or transparent");
}

double weightValue(std::string_view value, std::string_view word) {
    const std::optional<double> weight = wholeNumber<double>(value);
    if (!weight || !std::isfinite(*weight) || *weight < 0) {
        throw ExpressionError("bad weight " + quotedPart(word) + "; give a number from 0");
    }
    return *weight;
}

std::size_t parentValue(std::string_view value, std::string_view word, std::size_t earlierGuides) {
    const std::optional<std::size_t> parent = wholeNumber<std::size_t>(value);
    if (!parent || *parent < 1 || *parent > earlierGuides) {
        throw ExpressionError(quotedPart(word) + " names no earlier guide; there " +
                              (earlierGuides == 1 ? "is 1" : "are " + std::to_string(earlierGuides)) +
                              " before this one");
    }
    return *parent;
}

void applyGrid(AspectRatio& guide, std::string_view value, std::string_view word) {
    const std::size_t cross = value.find('x');
    if (cross == std::string_view::npos) throw badGrid(word);
    guide.rowType = GridType::divisor(gridCount(value.substr(0, cross), word));
    guide.columnType = GridType::divisor(gridCount(value.substr(cross + 1), word));
}

void applyWord(GuideExpression& expression, std::string_view word, std::size_t earlierGuides) {
    AspectRatio& guide = expression.guide;
    if (word == "clear" || word == "noclear") {
        guide.clearParent = word == "clear";
        return;
    }
    const std::size_t equals = word.find('=');
    const std::string_view key = word.substr(0, equals);
    const std::string_view value = equals == std::string_view::npos ? "" : word.substr(equals + 1);
    if (key == "color") guide.color = colorValue(value, word);
    else if (key == "fill") guide.fillColor = colorValue(value, word);
    else if (key == "weight") guide.weight = weightValue(value, word);
    else if (key == "grid") applyGrid(guide, value, word);
    else if (key == "grid-px") guide.rowType = guide.columnType = GridType::pixels(gridCount(value, word));
    else if (key == "in") expression.parent = parentValue(value, word, earlierGuides);
    else throw ExpressionError("unknown key " + quotedPart(key));
}

GuideExpression parsedExpression(const std::string& text, std::size_t earlierGuides) {
    std::istringstream words(text);
    std::string ratio;
    if (!(words >> ratio)) throw ExpressionError("no ratio; give W:H, such as 16:9");
    const auto [width, height] = ratioSides(ratio);
    GuideExpression expression{AspectRatio(width, height, AspectRatio::randomPaletteColor(), Color::clear(), 2.0,
                                           GridType::none(), GridType::none(), std::nullopt)};
    for (std::string word; words >> word;) applyWord(expression, word, earlierGuides);
    return expression;
}

AspectRatio withChildren(const std::vector<GuideExpression>& expressions, std::size_t position) {
    AspectRatio guide = expressions[position - 1].guide;
    for (std::size_t child = position + 1; child <= expressions.size(); ++child) {
        if (expressions[child - 1].parent != position) continue;
        if (!guide.children) guide.children.emplace();
        guide.children->push_back(withChildren(expressions, child));
    }
    return guide;
}

}  // namespace

GuideExpression parseGuideExpression(const std::string& text, std::size_t earlierGuides) {
    try {
        return parsedExpression(text, earlierGuides);
    } catch (const ExpressionError& error) {
        throw CLI::ValidationError("--guide " + quotedOnOneLine(text) + ": " + error.reason);
    }
}

std::vector<AspectRatio> nestedGuides(const std::vector<GuideExpression>& expressions) {
    std::vector<AspectRatio> topLevel;
    for (std::size_t position = 1; position <= expressions.size(); ++position) {
        if (expressions[position - 1].parent == 0) topLevel.push_back(withChildren(expressions, position));
    }
    return topLevel;
}

}  // namespace vantel::cli
