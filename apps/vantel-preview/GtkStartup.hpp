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

// Without a session bus, no accessibility bus to start and no attempt to
// start a session bus either.
void skipSessionBusWhenAbsent();

}  // namespace vantel::preview
