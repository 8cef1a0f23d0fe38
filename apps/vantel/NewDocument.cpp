#include "NewDocument.hpp"

#include <Platform/PropertyList.hpp>

namespace vantel::cli {

std::optional<Preset> presetNamed(std::string_view name) {
    if (name == "default") return Preset::defaultGuide;
    if (name == "test") return Preset::test;
    return std::nullopt;
}

OverlayGen newDocument(Preset preset) {
    std::vector<AspectRatio> guides =
        preset == Preset::test ? AspectRatio::test() : std::vector<AspectRatio>{AspectRatio::defaultGuide()};
    return OverlayGen(1920, 1080, 40, Color::black(), std::move(guides));
}

Data encodeNewDocument(const OverlayGen& document, bool binary) {
    PropertyListEncoder encoder;
    encoder.outputFormat = binary ? PropertyListEncoder::OutputFormat::binary : PropertyListEncoder::OutputFormat::xml;
    return encoder.encode(document);
}

}  // namespace vantel::cli
