// Numbers inside text: zero-padding digit runs and bumping a trailing counter.

#include <ZBExtensions/RegularExpressionMatching.hpp>
#include <ZBExtensions/Strings.hpp>

#include <Platform/Fatal.hpp>
#include <Platform/UnicodeText.hpp>

#include <charconv>
#include <cstdio>
#include <string>

namespace vantel {
namespace {

const RegularExpression& digitRuns() {
    static const std::optional<RegularExpression> expression = RegularExpression::compile("\\d+");
    if (!expression) fatalError("the digit-run pattern does not compile");
    return *expression;
}

struct ByteRange {
    std::size_t begin;
    std::size_t end;
};

ByteRange bytesOf(std::string_view text, RegularExpression::Range range) {
    return {utf8Offset(text, range.location), utf8Offset(text, range.location + range.length)};
}

// Byte offsets of UTF-16 positions that never go back: each one continues
// from the last, so converting every match of a text stays linear, where
// utf8Offset would scan from the start each time.
class ForwardUTF8Offsets {
public:
    explicit ForwardUTF8Offsets(std::string_view text) : text_(text) {}

    std::size_t operator()(std::size_t utf16Position) {
        while (at_ < text_.size()) {
            DecodedCodePoint next = decodeCodePoint(text_, at_);
            std::size_t width = next.value > 0xFFFF ? 2 : 1;
            if (units_ + width > utf16Position) break;
            units_ += width;
            at_ += next.length;
        }
        return at_;
    }

private:
    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t units_ = 0;
};

// A printf integer conversion found in a counter format: where it starts
// (at '%'), where its length modifier starts, and its conversion letter.
struct IntegerConversion {
    std::size_t start;
    std::size_t lengthModifier;
    std::size_t end;  // one past the conversion letter
    char letter;
};

std::size_t skipAll(std::string_view text, std::size_t at, std::string_view characters) {
    while (at < text.size() && characters.find(text[at]) != std::string_view::npos) ++at;
    return at;
}

// The conversion starting at format[start] == '%', when it is a plain
// integer conversion: flags, width and precision as digits only (no '*',
// no positional '$'), any integer length modifier, one of d i o u x X.
std::optional<IntegerConversion> integerConversionAt(std::string_view format, std::size_t start) {
    constexpr std::string_view digits = "0123456789";
    std::size_t at = skipAll(format, start + 1, "-+ #0'");
    at = skipAll(format, at, digits);
    if (at < format.size() && format[at] == '.') at = skipAll(format, at + 1, digits);
    std::size_t lengthModifier = at;
    at = skipAll(format, at, "hljzt");
    if (at - lengthModifier > 2 || at >= format.size()) return std::nullopt;
    char letter = format[at];
    if (std::string_view("diouxX").find(letter) == std::string_view::npos) return std::nullopt;
    return IntegerConversion{start, lengthModifier, at + 1, letter};
}

// The format's integer conversion, or none for a format of plain text. The
// format comes from the caller and goes to snprintf, so anything else in it
// would read arguments that are not there: a programming error.
std::optional<IntegerConversion> integerConversionIn(std::string_view format) {
    std::optional<IntegerConversion> found;
    for (std::size_t at = format.find('%'); at != std::string_view::npos; at = format.find('%', at)) {
        if (at + 1 < format.size() && format[at + 1] == '%') {
            at += 2;
            continue;
        }
        std::optional<IntegerConversion> conversion = integerConversionAt(format, at);
        if (!conversion || found) {
            fatalError("incrementingCounter: the format \"" + std::string(format) +
                       "\" may hold only one integer conversion such as %d");
        }
        found = conversion;
        at = conversion->end;
    }
    return found;
}

// The value written with the format, its conversion widened to intmax_t
// whatever length modifier it was given. A format without a conversion is
// written as it stands ("%%" still gives "%"), the value unused.
std::string formattedCounter(std::string_view format, std::int64_t value) {
    std::optional<IntegerConversion> conversion = integerConversionIn(format);
    std::string widened(format);
    if (conversion) {
        widened = std::string(format.substr(0, conversion->lengthModifier)) + 'j' + conversion->letter +
                  std::string(format.substr(conversion->end));
    }
    bool isSigned = !conversion || conversion->letter == 'd' || conversion->letter == 'i';
    auto write = [&](char* buffer, std::size_t size) {
        return isSigned ? std::snprintf(buffer, size, widened.c_str(), static_cast<std::intmax_t>(value))
                        : std::snprintf(buffer, size, widened.c_str(), static_cast<std::uintmax_t>(value));
    };
    int length = write(nullptr, 0);
    if (length < 0) fatalError("incrementingCounter: cannot format with \"" + std::string(format) + "\"");
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    write(text.data(), text.size());
    text.resize(static_cast<std::size_t>(length));
    return text;
}

// The text without, at both ends, any of the code points of `characters`.
std::string_view trimmingCodePoints(std::string_view text, std::string_view characters) {
    auto isTrimmed = [&](std::size_t at) {
        DecodedCodePoint next = decodeCodePoint(text, at);
        return characters.find(text.substr(at, next.length)) != std::string_view::npos ? next.length : 0;
    };
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t length = isTrimmed(start);
        if (length == 0) break;
        start += length;
    }
    std::size_t end = start;
    for (std::size_t at = start; at < text.size();) {
        std::size_t length = isTrimmed(at);
        at += length == 0 ? decodeCodePoint(text, at).length : length;
        if (length == 0) end = at;
    }
    return text.substr(start, end - start);
}

// A decimal integer with an optional sign, nothing else; absent otherwise
// or when it does not fit.
std::optional<std::int64_t> decimalInteger(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int64_t value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

struct Counter {
    std::string base;  // the text without its counter
    std::int64_t value;
};

Counter nextCounter(std::string_view text, std::int64_t starting, std::int64_t by, std::string_view delimiter) {
    std::optional<RegularExpression> trailing = RegularExpression::compile(std::string(delimiter) + "\\d+$");
    std::optional<RegularExpression::Match> found = trailing ? firstMatch(*trailing, text) : std::nullopt;
    if (!found) return {std::string(text), starting};
    ByteRange counter = bytesOf(text, *(*found)[0]);
    std::string_view digits = trimmingCodePoints(text.substr(counter.begin, counter.end - counter.begin), delimiter);
    std::optional<std::int64_t> current = decimalInteger(digits);
    if (!current) return {std::string(text), starting};
    std::int64_t next = 0;
    if (__builtin_add_overflow(*current, by, &next)) {
        fatalError("incrementingCounter: " + std::to_string(*current) + " + " + std::to_string(by) + " overflows");
    }
    return {std::string(text.substr(0, counter.begin)) + std::string(text.substr(counter.end)), next};
}

}  // namespace

std::string paddingNumbers(std::string_view text, int width, std::string_view pad) {
    std::vector<RegularExpression::Match> runs =
        digitRuns().matches(text, 0, graphemeCount(text), RegularExpression::Bounds::withoutAnchoring);
    std::string result;
    result.reserve(text.size());
    ForwardUTF8Offsets byteOffset(text);
    std::size_t copied = 0;
    for (const RegularExpression::Match& run : runs) {
        RegularExpression::Range digits = *run[0];
        auto missing = static_cast<std::int64_t>(width) - static_cast<std::int64_t>(digits.length);
        if (missing <= 0) continue;
        std::size_t start = byteOffset(digits.location);
        result.append(text.substr(copied, start - copied));
        for (std::int64_t i = 0; i < missing; ++i) result.append(pad);
        copied = start;
    }
    result.append(text.substr(copied));
    return result;
}

void padNumbers(std::string& text, int width, std::string_view pad) { text = paddingNumbers(text, width, pad); }

std::string incrementingCounter(std::string_view text, std::int64_t starting, std::int64_t by, std::string_view format,
                                std::string_view delimiter) {
    Counter counter = nextCounter(text, starting, by, delimiter);
    return counter.base + std::string(delimiter) + formattedCounter(format, counter.value);
}

void incrementCounter(std::string& text, std::int64_t starting, std::int64_t by, std::string_view format,
                      std::string_view delimiter) {
    text = incrementingCounter(text, starting, by, format, delimiter);
}

}  // namespace vantel
