#pragma once

// The file formats `vantel render` writes, named on the command line by
// --format or by the output's extension.

#include <CoreGraphicsRendering/ImageEncoding.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace vantel::cli {

// The kinds of output: a bitmap of a file type, a vector PDF page, a
// vector SVG picture, or the guides as an ASC framing decision list. A new
// kind is one more alternative here and one more branch where outputs are
// encoded (encodeDocument).
struct BitmapOutput {
    NSBitmapImageFileType type;
    friend bool operator==(const BitmapOutput&, const BitmapOutput&) = default;
};
struct PDFOutput {
    friend bool operator==(const PDFOutput&, const PDFOutput&) = default;
};
struct SVGOutput {
    friend bool operator==(const SVGOutput&, const SVGOutput&) = default;
};
struct FDLOutput {
    friend bool operator==(const FDLOutput&, const FDLOutput&) = default;
};
using OutputKind = std::variant<BitmapOutput, PDFOutput, SVGOutput, FDLOutput>;

struct OutputFormat {
    std::string extension;  // what --out-dir names outputs with
    OutputKind kind;

    // Whether several documents fit in one file of this format.
    bool holdsPages() const { return std::holds_alternative<PDFOutput>(kind); }

    // A format name or file extension, any case, with or without the dot:
    // png, tiff/tif, bmp, gif, jpeg/jpg, jpeg2000/jp2, pdf, svg, fdl.
    static std::optional<OutputFormat> named(std::string_view name);
    // The format named by the file's extension.
    static std::optional<OutputFormat> forFile(const std::filesystem::path& file);

    // "png, tiff (tif), ..." for help and error texts.
    static std::string namesText();

    friend bool operator==(const OutputFormat&, const OutputFormat&) = default;
};

}  // namespace vantel::cli
