#include <OverlayGenerator/AspectRatio.hpp>

#include <Platform/NumberFormat.hpp>
#include <Platform/NumberText.hpp>
#include <Platform/SecureRandom.hpp>

namespace vantel {

namespace {

constexpr const char* ratioSign = "\u2236";  // ∶

enum class Orientation { landscape, portrait, square };

Orientation orientation(double r) {
    if (r > 1) return Orientation::landscape;
    if (r < 1) return Orientation::portrait;
    return Orientation::square;  // equal, or NaN
}

}  // namespace

std::string AspectRatio::description() const {
    return "Ratio " + numberText(width) + " " + ratioSign + " " + numberText(height);
}

std::string AspectRatio::icon() const {
    switch (orientation(ratio())) {
        case Orientation::landscape: return "rectangle";
        case Orientation::portrait: return "rectangle.portrait";
        case Orientation::square: return "square";
    }
    return "square";
}

std::string AspectRatio::iconFill() const { return icon() + ".fill"; }

std::string AspectRatio::FormatStyle::format(const AspectRatio& ratio) const {
    return formatDecimal(ratio.width) + ratioSign + formatDecimal(ratio.height);
}

// A format style has no settings: it codes as an empty dictionary.
AspectRatio::FormatStyle AspectRatio::FormatStyle::decode(const Decoder& decoder) {
    decoder.container();
    return {};
}

void AspectRatio::FormatStyle::encode(Encoder& encoder) const { encoder.container(); }

const std::vector<Color>& AspectRatio::presetPalette() {
    static const std::vector<Color> palette{
        Color::rgb255(141, 211, 199, 1.0), Color::rgb255(190, 186, 218, 1.0),
        Color::rgb255(251, 128, 114, 1.0), Color::rgb255(128, 177, 211, 1.0),
        Color::rgb255(253, 180, 98, 1.0),  Color::rgb255(179, 222, 105, 1.0),
        Color::rgb255(252, 205, 229, 1.0), Color::rgb255(217, 217, 217, 1.0),
        Color::rgb255(188, 128, 189, 1.0), Color::rgb255(204, 235, 197, 1.0),
        Color::rgb255(255, 237, 111, 1.0),
    };
    return palette;
}

Color AspectRatio::randomPaletteColor() {
    const std::vector<Color>& palette = presetPalette();
    return palette[secureRandomInClosedRange(0, palette.size() - 1)];
}

AspectRatio AspectRatio::defaultGuide() { return defaultGuide(randomPaletteColor); }

AspectRatio AspectRatio::defaultGuide(const ColorSource& nextColor) {
    return AspectRatio(1, 1, nextColor(), Color::clear(), 10, GridType::none(), GridType::none(),
                       std::nullopt);
}

std::vector<AspectRatio> AspectRatio::test() { return test(randomPaletteColor); }

std::vector<AspectRatio> AspectRatio::test(const ColorSource& nextColor) {
    // Colours are drawn one statement at a time so the order is fixed.
    Color wideColor = nextColor();
    Color childColor = nextColor();
    Color tallColor = nextColor();
    AspectRatio child(4, 3, childColor, Color::fromHexString("00007E", 0.25), 10, GridType::none(),
                      GridType::none(), std::nullopt);
    AspectRatio wide(16, 9, wideColor, Color::grey(0, 0.75), 10, GridType::none(), GridType::none(),
                     std::vector<AspectRatio>{child});
    AspectRatio tall(9, 16, tallColor, Color::clear(), 10, GridType::divisor(3), GridType::none(),
                     std::nullopt);
    return {wide, tall};
}

}  // namespace vantel
