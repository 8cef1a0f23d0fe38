#pragma once

// The documents `vantel new` writes: a preset's guides on a 1920 x 1080
// canvas with a margin of 40 and a black background, encoded as a property
// list.

#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/Data.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace vantel::cli {

enum class Preset { defaultGuide, test };

// "default" or "test".
std::optional<Preset> presetNamed(std::string_view name);

// A new document; the preset's guides get fresh ids and palette colours.
OverlayGen newDocument(Preset preset);

// The property-list form (XML, or binary when asked); decoding it gives an
// equal document.
Data encodeNewDocument(const OverlayGen& document, bool binary);

}  // namespace vantel::cli
