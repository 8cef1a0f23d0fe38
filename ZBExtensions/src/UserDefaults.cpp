#include <ZBExtensions/UserDefaults.hpp>

#include <Platform/FileIO.hpp>
#include <Platform/PropertyList.hpp>

#include <ZBExtensions/FileManager.hpp>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <string>

namespace vantel {

namespace {

std::filesystem::path configurationFolder() {
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    if (xdg != nullptr && std::filesystem::path(xdg).is_absolute()) return xdg;
    const char* home = std::getenv("HOME");
    return std::filesystem::path(home != nullptr ? home : "") / ".config";
}

// The stored dictionary; an absent or unreadable store reads as empty.
CodingValue::Dictionary readEntries(const std::filesystem::path& file) {
    try {
        CodingValue root = PropertyListDecoder().parse(readData(file));
        if (root.kind() == CodingValue::Kind::dictionary) return root.asDictionary();
    } catch (const std::exception&) {
    }
    return {};
}

void writeEntries(const std::filesystem::path& file, CodingValue::Dictionary entries) {
    std::filesystem::create_directories(file.parent_path());
    writeDataAtomically(PropertyListEncoder().serialize(CodingValue::dictionary(std::move(entries))), file);
}

// Made only for something that exists, as a bookmark is.
std::optional<Data> bookmarkData(const std::optional<URL>& url) {
    if (!url || !url->isFileURL()) return std::nullopt;
    bool isDirectory = false;
    if (!fileExists(*url, isDirectory)) return std::nullopt;
    std::string text = url->absoluteString();
    return Data(text.begin(), text.end());
}

std::optional<URL> resolvedBookmark(const Data& bookmark) {
    auto url = URL::fromString(std::string(bookmark.begin(), bookmark.end()));
    bool isDirectory = false;
    if (!url || !url->isFileURL() || !fileExists(*url, isDirectory)) return std::nullopt;
    return url;
}

}  // namespace

UserDefaults UserDefaults::standard() { return UserDefaults(configurationFolder() / "vantel" / "defaults.plist"); }

void UserDefaults::setSecureURL(const std::optional<URL>& url, std::string_view key) const {
    try {
        CodingValue::Dictionary entries = readEntries(file_);
        std::erase_if(entries, [&](const auto& entry) { return entry.first == key; });
        if (auto bookmark = bookmarkData(url)) entries.emplace_back(std::string(key), CodingValue::data(std::move(*bookmark)));
        writeEntries(file_, std::move(entries));
    } catch (const std::exception&) {  // settings are a convenience: losing one is not an error
    }
}

std::optional<URL> UserDefaults::secureURL(std::string_view key) const {
    CodingValue root = CodingValue::dictionary(readEntries(file_));
    const CodingValue* value = root.find(key);
    if (value == nullptr || value->kind() != CodingValue::Kind::data) return std::nullopt;
    return resolvedBookmark(value->asData());
}

}  // namespace vantel
