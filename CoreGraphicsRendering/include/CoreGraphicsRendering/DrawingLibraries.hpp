#pragma once

#include <Platform/LibraryVersions.hpp>

#include <vector>

namespace vantel {

// cairo and the image encoders: zlib, libtiff, libjpeg-turbo, giflib, OpenJPEG.
std::vector<LibraryVersion> drawingLibraryVersions();

}  // namespace vantel
