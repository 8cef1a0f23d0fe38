#include "BackgroundOption.hpp"

#include <Graphics2/ColorText.hpp>

namespace vantel::cli {

void addBackgroundOption(CLI::App& command, std::string& text) {
    command
        .add_option("--background", text,
                    "replace the canvas background: #RRGGBB, #RRGGBBAA, rgb(R,G,B), rgba(R,G,B,A) with numbers "
                    "on the 0-1 scale, or a CSS colour name such as navy")
        ->option_text("COLOR")
        ->group("Output");
}

std::optional<Color> chosenBackground(const std::string& text) {
    if (text.empty()) return std::nullopt;
    if (!isRecognisedColorText(text)) {
        throw CLI::ValidationError("--background", "'" + text +
                                                       "' is not a colour; give #RRGGBB, #RRGGBBAA, rgb()/rgba() "
                                                       "with numbers on the 0-1 scale, or a lower-case CSS name");
    }
    return colorFromText(text);
}

}  // namespace vantel::cli
