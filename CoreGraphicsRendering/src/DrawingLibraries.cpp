#include <CoreGraphicsRendering/DrawingLibraries.hpp>

#include <cairo.h>
#include <gif_lib.h>
#include <openjpeg.h>
#include <tiffio.h>
#include <zlib.h>

#include <cstdio>
#include <jpeglib.h>

#include <string>

namespace vantel {

namespace {

#define VANTEL_TEXT(x) #x
#define VANTEL_EXPANDED_TEXT(x) VANTEL_TEXT(x)

// TIFFGetVersion() is a banner: "LIBTIFF, Version 4.5.0\nCopyright ...".
std::string tiffVersion() {
    std::string banner = TIFFGetVersion();
    const std::string marker = "Version ";
    std::size_t start = banner.find(marker);
    if (start == std::string::npos) return banner.substr(0, banner.find('\n'));
    start += marker.size();
    return banner.substr(start, banner.find_first_of(" \n", start) - start);
}

std::string gifVersion() {
    return std::to_string(GIFLIB_MAJOR) + "." + std::to_string(GIFLIB_MINOR) + "." + std::to_string(GIFLIB_RELEASE);
}

}  // namespace

std::vector<LibraryVersion> drawingLibraryVersions() {
    return {{"cairo", cairo_version_string()},
            {"zlib", zlibVersion()},
            {"libtiff", tiffVersion()},
            {"libjpeg-turbo", VANTEL_EXPANDED_TEXT(LIBJPEG_TURBO_VERSION)},
            {"giflib", gifVersion()},
            {"OpenJPEG", opj_version()}};
}

}  // namespace vantel
