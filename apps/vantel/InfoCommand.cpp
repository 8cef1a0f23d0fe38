// vantel info FILE

#include "CommandRegistry.hpp"
#include "HelpFormat.hpp"
#include "DocumentLoading.hpp"

#include <Platform/NumberText.hpp>

#include <cmath>
#include <iostream>
#include <memory>
#include <sstream>

namespace vantel::cli {

namespace {

// Laid-out sizes to two decimals: enough to place a guide, short enough to read.
std::string pixelsText(double value) { return numberText(std::round(value * 100) / 100); }

std::string colorText(const Color& color) {
    std::string text = color.toHex();
    if (color.alpha < 1) text += " alpha " + numberText(color.alpha);
    return text;
}

std::string gridText(const GridType& grid) {
    switch (grid.tag) {
        case GridType::Case::none: return "";
        case GridType::Case::pixels: return "every " + std::to_string(grid.payload) + " px";
        case GridType::Case::divisor: return "in " + std::to_string(grid.payload) + " equal parts";
    }
    return "";
}

std::string guideText(const AspectRatio& guide, const Size& fitted) {
    std::ostringstream text;
    text << guide.formatted() << " at " << pixelsText(fitted.width) << " x " << pixelsText(fitted.height)
         << " px: outline " << colorText(guide.color) << " weight " << numberText(guide.weight);
    text << ", " << (guide.fillColor.alpha == 0 ? "no fill" : "fill " + colorText(guide.fillColor));
    if (std::string rows = gridText(guide.rowType); !rows.empty()) text << ", rows " << rows;
    if (std::string columns = gridText(guide.columnType); !columns.empty()) text << ", columns " << columns;
    text << ", " << (guide.clearParent ? "clears what is beneath" : "keeps what is beneath");
    return text.str();
}

// One line per guide, children indented under their parent with tree lines.
void printGuides(std::ostream& out, const std::vector<AspectRatio>& guides, const Size& box,
                 const std::string& indent) {
    for (std::size_t i = 0; i < guides.size(); ++i) {
        const bool last = i + 1 == guides.size();
        const AspectRatio& guide = guides[i];
        const Size fitted = guide.fitting(box);
        out << indent << (last ? "└─ " : "├─ ") << guideText(guide, fitted) << '\n';
        if (guide.children) printGuides(out, *guide.children, fitted, indent + (last ? "   " : "│  "));
    }
}

std::size_t guideCount(const std::vector<AspectRatio>& guides) {
    std::size_t count = guides.size();
    for (const AspectRatio& guide : guides) {
        if (guide.children) count += guideCount(*guide.children);
    }
    return count;
}

void printDocument(std::ostream& out, const std::string& file, const OverlayGen& document) {
    const Size size = document.size();
    out << "file         " << file << '\n'
        << "description  " << document.description() << '\n'
        << "canvas       " << numberText(size.width) << " x " << numberText(size.height) << ", margin "
        << numberText(size.margin) << '\n'
        << "background   " << colorText(document.backgroundColor()) << '\n';
    const auto& guides = document.ratios();
    if (guides.empty()) {
        out << "guides       none\n";
        return;
    }
    out << "guides       " << guideCount(guides) << " (" << guides.size()
        << " at the top level), drawn in this order:\n";
    printGuides(out, guides, size, "");
}

ExitCode runInfo(const std::string& file) {
    DocumentSource source = documentSource(file);
    CommandDocument loaded = readDocument(source);
    if (!loaded.ok()) {
        reportProblems(loaded.problems);
        return loaded.failure;
    }
    printDocument(std::cout, source.name(), *loaded.document);
    return ExitCode::ok;
}

const char* const infoFooter =
    "Shows the canvas, the background, the document's description and each\n"
    "guide as a tree: its ratio, the size it is laid out at, outline and fill\n"
    "colours in hex, stroke weight, grid and whether it clears what is beneath.\n"
    "Exit codes: 0 shown, 1 the document is bad, 2 bad usage, 3 FILE could not be read.";

CommandRegistration registration(30, [](CLI::App& app, ExitCode& result) {
    auto file = std::make_shared<std::string>();
    CLI::App* sub = app.add_subcommand("info", "Describe an overlay document");
    setUsageForms(sub, {"vantel info FILE"});
    sub->footer(infoFooter);
    sub->add_option("FILE", *file, "an overlay document (.aspectratio), or - for standard input")
        ->required()
        ->option_text("FILE")
        ->group("Input");
    sub->callback([file, &result] { result = runInfo(*file); });
});

}  // namespace

}  // namespace vantel::cli
