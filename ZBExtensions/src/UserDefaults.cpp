#include <ZBExtensions/UserDefaults.hpp>

#include <Platform/FileIO.hpp>
#include <Platform/PropertyList.hpp>

#include <ZBExtensions/FileManager.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <mutex>
#include <stdexcept>
#include <string>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace vantel {

namespace {

bool isAbsolutePath(const char* text) { return text != nullptr && std::filesystem::path(text).is_absolute(); }

// Without either variable there is no place of the user's own: settings
// written relative to whatever folder the program runs in would be lost.
std::filesystem::path configurationFolder() {
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    if (isAbsolutePath(xdg)) return xdg;
    const char* home = std::getenv("HOME");
    if (!isAbsolutePath(home)) {
        throw std::runtime_error(
            "cannot place the settings file: neither XDG_CONFIG_HOME nor HOME is an absolute path");
    }
    return std::filesystem::path(home) / ".config";
}

// A store kept as a link (to dotfiles under version control, say) is written
// through the link, not replaced by a file of its own.
std::filesystem::path followingLinks(std::filesystem::path file) {
    for (int hops = 0; hops < 40 && std::filesystem::is_symlink(file); ++hops) {
        std::filesystem::path target = std::filesystem::read_symlink(file);
        file = target.is_absolute() ? target : file.parent_path() / target;
    }
    return file;
}

// Held over a read-modify-write of the store, so that concurrent changes
// each see the one before: threads of this process queue on the mutex,
// other processes on an flock of a lock file beside the store.
class StoreLock {
public:
    explicit StoreLock(const std::filesystem::path& store) : threads_(threadsMutex()) {
        std::filesystem::path lockFile = store;
        lockFile += ".lock";
        descriptor_ = ::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (descriptor_ < 0) throw std::system_error(errno, std::system_category(), "cannot open " + lockFile.string());
        while (::flock(descriptor_, LOCK_EX) != 0) {
            if (errno == EINTR) continue;
            int error = errno;
            ::close(descriptor_);
            throw std::system_error(error, std::system_category(), "cannot lock " + lockFile.string());
        }
    }
    ~StoreLock() { ::close(descriptor_); }
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;

private:
    static std::mutex& threadsMutex() {
        static std::mutex mutex;
        return mutex;
    }
    std::lock_guard<std::mutex> threads_;
    int descriptor_ = -1;
};

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
        std::filesystem::path store = followingLinks(file_);
        std::filesystem::create_directories(store.parent_path());
        StoreLock lock(store);
        CodingValue::Dictionary entries = readEntries(store);
        std::erase_if(entries, [&](const auto& entry) { return entry.first == key; });
        if (auto bookmark = bookmarkData(url)) entries.emplace_back(std::string(key), CodingValue::data(std::move(*bookmark)));
        writeEntries(store, std::move(entries));
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
