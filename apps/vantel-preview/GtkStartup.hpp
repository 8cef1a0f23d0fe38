#pragma once

// What the GTK programs settle before GTK starts.

#include <filesystem>
#include <string>

namespace vantel::preview {

// Desktop launchers pass a file URI (%u) or a path (%f).
std::filesystem::path documentPath(const std::string& argument);

// GTK's cairo renderer for a picture that is one cairo drawing, unless
// GSK_RENDERER or GDK_DEBUG say otherwise.
void preferCairoRendering();

// No accessibility bus to start when there is no session bus.
void skipAccessibilityWithoutBus();

}  // namespace vantel::preview
