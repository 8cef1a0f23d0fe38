#include "GuideExpressionEdit.hpp"

#include "GuideExpression.hpp"

#include <Platform/NumberText.hpp>

#include <CLI/CLI.hpp>

#include <set>
#include <sstream>

namespace vantel::editor {

namespace {

std::string ratioText(const AspectRatio& guide) { return numberText(guide.width) + ":" + numberText(guide.height); }

// The keys the text names ("color", "grid", "clear", ...), and the text
// with the guide's ratio in front when it starts without one.
std::pair<std::set<std::string>, std::string> namedKeys(const AspectRatio& guide, const std::string& text) {
    std::istringstream words(text);
    std::set<std::string> keys;
    std::string full;
    for (std::string word; words >> word;) {
        bool setting = word.find('=') != std::string::npos || word == "clear" || word == "noclear";
        if (full.empty() && setting) full = ratioText(guide);
        keys.insert(word == "noclear" ? "clear" : word.substr(0, word.find('=')));
        full += (full.empty() ? "" : " ") + word;
    }
    return {keys, full};
}

}  // namespace

std::variant<AspectRatio, std::string> guideWithExpression(const AspectRatio& guide, const std::string& text) {
    auto [keys, full] = namedKeys(guide, text);
    AspectRatio read = guide;
    try {
        read = cli::parseGuideExpression(full, 0).guide;
    } catch (const CLI::ValidationError& error) {
        std::string reason = error.what();
        return reason.starts_with("--guide ") ? reason.substr(8) : reason;
    }
    AspectRatio changed = guide;
    changed.width = read.width;
    changed.height = read.height;
    if (keys.contains("color")) changed.color = read.color;
    if (keys.contains("fill")) changed.fillColor = read.fillColor;
    if (keys.contains("weight")) changed.weight = read.weight;
    if (keys.contains("grid") || keys.contains("grid-px")) {
        changed.rowType = read.rowType;
        changed.columnType = read.columnType;
    }
    if (keys.contains("clear")) changed.clearParent = read.clearParent;
    return changed;
}

}  // namespace vantel::editor
