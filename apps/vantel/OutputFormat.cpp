#include "OutputFormat.hpp"

#include <algorithm>
#include <cctype>
#include <utility>
#include <vector>

namespace vantel::cli {

namespace {

struct FormatName {
    std::string_view name;
    OutputKind kind;
};

// Canonical names first; the extensions the canonical ones write come from
// fileExtension, so --out-dir names files the way the renderer names them.
const std::vector<FormatName>& formatNames() {
    static const std::vector<FormatName> names{
        {"png", BitmapOutput{NSBitmapImageFileType::png}},
        {"tiff", BitmapOutput{NSBitmapImageFileType::tiff}},
        {"tif", BitmapOutput{NSBitmapImageFileType::tiff}},
        {"bmp", BitmapOutput{NSBitmapImageFileType::bmp}},
        {"gif", BitmapOutput{NSBitmapImageFileType::gif}},
        {"jpeg", BitmapOutput{NSBitmapImageFileType::jpeg}},
        {"jpg", BitmapOutput{NSBitmapImageFileType::jpeg}},
        {"jpeg2000", BitmapOutput{NSBitmapImageFileType::jpeg2000}},
        {"jp2", BitmapOutput{NSBitmapImageFileType::jpeg2000}},
        {"pdf", PDFOutput{}},
        {"svg", SVGOutput{}},
        {"fdl", FDLOutput{}},
    };
    return names;
}

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

}  // namespace

std::optional<OutputFormat> OutputFormat::named(std::string_view name) {
    if (name.starts_with('.')) name.remove_prefix(1);
    const std::string key = lowered(name);
    for (const FormatName& entry : formatNames()) {
        if (entry.name != key) continue;
        const auto* bitmap = std::get_if<BitmapOutput>(&entry.kind);
        return OutputFormat{bitmap ? fileExtension(bitmap->type) : std::string(entry.name), entry.kind};
    }
    return std::nullopt;
}

std::optional<OutputFormat> OutputFormat::forFile(const std::filesystem::path& file) {
    const std::string extension = file.extension().string();
    if (extension.size() < 2) return std::nullopt;
    return named(extension);
}

std::string OutputFormat::namesText() {
    return "png, tiff (tif), bmp, gif, jpeg (jpg), jpeg2000 (jp2), pdf, svg, fdl";
}

}  // namespace vantel::cli
