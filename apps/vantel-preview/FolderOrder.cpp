#include "FolderOrder.hpp"

#include <ZBExtensions/Strings.hpp>

#include <algorithm>
#include <cctype>
#include <string>
#include <system_error>

namespace vantel::preview {

// Natural order of the names, as file browsers list them (shot2 before
// shot10, case ignored). Names that rank equal there (Shot1 and shot1) fall
// back to their bytes, so the walk has one fixed order however the folder
// happens to list them.
bool documentPrecedes(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::string first = a.filename().string();
    std::string second = b.filename().string();
    if (naturallyPrecedes(first, second)) return true;
    if (naturallyPrecedes(second, first)) return false;
    return first < second;
}

namespace {

bool isDocumentName(const std::filesystem::path& path) {
    std::string extension = path.extension().string();
    if (extension == ".aspectratio") return true;
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".fdl";
}

}  // namespace

std::vector<std::filesystem::path> documentsInFolder(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> documents;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (isDocumentName(entry.path()) && !entry.is_directory(error)) {
            documents.push_back(entry.path());
        }
    }
    std::sort(documents.begin(), documents.end(), documentPrecedes);
    return documents;
}

std::filesystem::path neighbourDocument(const std::filesystem::path& current, int step) {
    std::filesystem::path folder = current.parent_path().empty() ? "." : current.parent_path();
    std::vector<std::filesystem::path> documents = documentsInFolder(folder);
    auto found = std::find_if(documents.begin(), documents.end(),
                              [&](const auto& path) { return path.filename() == current.filename(); });
    if (found == documents.end()) return current;
    auto count = static_cast<std::ptrdiff_t>(documents.size());
    std::ptrdiff_t index = ((found - documents.begin()) + step % count + count) % count;
    return documents[static_cast<std::size_t>(index)];
}

}  // namespace vantel::preview
