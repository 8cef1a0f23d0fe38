#include "BackgroundOption.hpp"

#include "CSSColor.hpp"
#include "UsageErrors.hpp"

namespace vantel::cli {

namespace {

const char* const colorExamples =
    "a CSS colour such as navy, #f80, #ff800080, rgb(255,128,0), rgba(100%,50%,0%,0.5), hsl(30,100%,50%) or "
    "transparent";

Color colorOrUsageError(const std::string& option, const std::string& text, const std::string& hint = "") {
    std::optional<Color> color = cssColor(text);
    if (!color) {
        throw CLI::ValidationError(option, quotedOnOneLine(text) +
                                               " is not a colour; give a name, #rrggbb, rgb(), rgba(), hsl() "
                                               "or transparent" + hint);
    }
    return *color;
}

}  // namespace

void addBackgroundOption(CLI::App& command, std::optional<std::string>& text) {
    command.add_option("--background", text, std::string("replace the canvas background with ") + colorExamples)
        ->option_text("COLOR")
        ->group("Output");
}

void addFlattenOption(CLI::App& command, std::optional<std::string>& text) {
    command
        .add_option("--flatten", text,
                    "lay the picture onto an opaque colour (default white), so that no pixel stays transparent, "
                    "not even the holes of guides that clear what is beneath; bitmap formats only. Before a FILE, "
                    "write --flatten=COLOR")
        ->expected(0, 1)
        ->default_str("white")
        ->option_text("[COLOR]")
        ->group("Output");
}

std::optional<Color> chosenBackground(const std::optional<std::string>& text) {
    if (!text) return std::nullopt;
    return colorOrUsageError("--background", *text);
}

std::optional<Color> chosenFlatten(const std::optional<std::string>& text) {
    if (!text) return std::nullopt;
    // The colour is optional, so a document right after the option is taken
    // for it.
    Color color = colorOrUsageError("--flatten", *text, " (right before a FILE, write --flatten=COLOR)");
    if (color.alpha < 1) {
        throw CLI::ValidationError("--flatten", quotedOnOneLine(*text) +
                                                    " is not opaque; the picture is laid onto a colour without "
                                                    "transparency");
    }
    return color;
}

}  // namespace vantel::cli
