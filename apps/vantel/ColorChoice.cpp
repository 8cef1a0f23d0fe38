#include "ColorChoice.hpp"

#include <Graphics2/ColorText.hpp>

namespace vantel::cli {

std::optional<Color> colorFromOption(const std::string& text) {
    if (!isRecognisedColorText(text)) return std::nullopt;
    return colorFromText(text);
}

}  // namespace vantel::cli
