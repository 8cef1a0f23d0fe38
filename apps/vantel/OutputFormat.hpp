#pragma once

// The file formats `vantel render` writes, named on the command line by
// --format or by the output's extension.

#include <CoreGraphicsRendering/ImageEncoding.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vantel::cli {

struct OutputFormat {
    std::string extension;                            // what --out-dir names outputs with
    std::optional<NSBitmapImageFileType> bitmapType;  // absent for PDF

    bool isPDF() const { return !bitmapType; }

    // A format name or file extension, any case, with or without the dot:
    // png, tiff/tif, bmp, gif, jpeg/jpg, jpeg2000/jp2, pdf.
    static std::optional<OutputFormat> named(std::string_view name);
    // The format named by the file's extension.
    static std::optional<OutputFormat> forFile(const std::filesystem::path& file);

    // "png, tiff (tif), ..." for help and error texts.
    static std::string namesText();

    friend bool operator==(const OutputFormat&, const OutputFormat&) = default;
};

}  // namespace vantel::cli
