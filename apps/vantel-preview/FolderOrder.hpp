#pragma once

#include <filesystem>
#include <vector>

namespace vantel::preview {

// The documents in `folder` (overlays, ".aspectratio", and framing decision
// lists, ".fdl" in any case, as the window recognises them), in the order
// Left and Right walk them: natural order of the names, as `vantel render`
// takes a batch, so a shot's overlay and its list sit side by side. All ordering goes through documentPrecedes, so a change of order is
// made there alone.
bool documentPrecedes(const std::filesystem::path& a, const std::filesystem::path& b);
std::vector<std::filesystem::path> documentsInFolder(const std::filesystem::path& folder);

// The document `step` places (-1 previous, +1 next) from `current`, wrapping
// at the ends; `current` itself when it is alone or cannot be listed.
std::filesystem::path neighbourDocument(const std::filesystem::path& current, int step);

}  // namespace vantel::preview
