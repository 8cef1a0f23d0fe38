#pragma once

// The documents `vantel new` writes: a preset's guides, or guides given one
// by one, on a canvas (1920 x 1080 with a margin of 40 and a black
// background unless told otherwise), encoded as a property list.

#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/Data.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantel::cli {

enum class Preset { defaultGuide, test, cinema, social, safe };

// "default", "test", "cinema", "social" or "safe".
std::optional<Preset> presetNamed(std::string_view name);
const std::vector<std::string>& presetNames();

// The preset's guides with fresh ids and palette colours.
std::vector<AspectRatio> presetGuides(Preset preset);

// A new document on the usual canvas, with a preset's guides or the ones given.
OverlayGen newDocument(Preset preset);
OverlayGen newDocument(std::vector<AspectRatio> guides);

// The property-list form (XML, or binary when asked); decoding it gives an
// equal document.
Data encodeNewDocument(const OverlayGen& document, bool binary);

}  // namespace vantel::cli
