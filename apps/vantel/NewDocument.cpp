#include "NewDocument.hpp"

#include "GuideExpression.hpp"

#include <Platform/PropertyList.hpp>

namespace vantel::cli {

namespace {

std::vector<AspectRatio> guidesOf(const std::vector<std::string>& expressions) {
    std::vector<GuideExpression> parsed;
    for (const std::string& text : expressions) parsed.push_back(parseGuideExpression(text, parsed.size()));
    return nestedGuides(parsed);
}

// The nested frames do not clear: a narrower sibling drawn later would
// otherwise erase the sides of the wider ones.
std::vector<AspectRatio> cinemaGuides() {
    return guidesOf({"16:9 weight=4", "1.85:1 weight=4 noclear in=1", "2.39:1 weight=4 noclear in=1"});
}

std::vector<AspectRatio> socialGuides() {
    return guidesOf({"16:9 weight=4", "9:16 weight=4 noclear in=1", "4:5 weight=4 noclear in=1",
                     "1:1 weight=4 noclear in=1"});
}

// A guide is always the largest box of its ratio inside its parent, so a
// 93 % or 90 % area of the same ratio cannot be a guide of its own. The
// nearest form a document can hold: a 20 x 20 grid over the frame, whose
// outermost lines lie 5 % in from each edge, around the 90 % title area.
std::vector<AspectRatio> safeGuides() {
    return guidesOf({"16:9 weight=4", "16:9 weight=1 grid=20x20 noclear in=1"});
}

}  // namespace

std::optional<Preset> presetNamed(std::string_view name) {
    if (name == "default") return Preset::defaultGuide;
    if (name == "test") return Preset::test;
    if (name == "cinema") return Preset::cinema;
    if (name == "social") return Preset::social;
    if (name == "safe") return Preset::safe;
    return std::nullopt;
}

const std::vector<std::string>& presetNames() {
    static const std::vector<std::string> names{"default", "test", "cinema", "social", "safe"};
    return names;
}

std::vector<AspectRatio> presetGuides(Preset preset) {
    switch (preset) {
        case Preset::defaultGuide: return {AspectRatio::defaultGuide()};
        case Preset::test: return AspectRatio::test();
        case Preset::cinema: return cinemaGuides();
        case Preset::social: return socialGuides();
        case Preset::safe: return safeGuides();
    }
    return {};
}

OverlayGen newDocument(Preset preset) { return newDocument(presetGuides(preset)); }

OverlayGen newDocument(std::vector<AspectRatio> guides) {
    return OverlayGen(1920, 1080, 40, Color::black(), std::move(guides));
}

Data encodeNewDocument(const OverlayGen& document, bool binary) {
    PropertyListEncoder encoder;
    encoder.outputFormat = binary ? PropertyListEncoder::OutputFormat::binary : PropertyListEncoder::OutputFormat::xml;
    return encoder.encode(document);
}

}  // namespace vantel::cli
