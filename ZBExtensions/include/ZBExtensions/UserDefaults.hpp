#pragma once

// A small persisted store of settings: a property-list dictionary in one
// file, rewritten atomically on every change under a lock (threads and
// processes changing one store keep each other's keys), through the link
// when the file is a symbolic link. Remembered file locations are kept as
// file URLs that must still lead somewhere when read back, standing in for
// the security-scoped bookmarks of sandboxed desktops. Every failure to read
// or write reads as absence; only standard() throws.

#include <Platform/URL.hpp>

#include <filesystem>
#include <optional>
#include <string_view>

namespace vantel {

class UserDefaults {
public:
    explicit UserDefaults(std::filesystem::path file) : file_(std::move(file)) {}

    // $XDG_CONFIG_HOME/vantel/defaults.plist, or $HOME/.config/vantel/...
    // when XDG_CONFIG_HOME is unset or not absolute. Throws
    // std::runtime_error when neither is an absolute path.
    static UserDefaults standard();

    const std::filesystem::path& file() const { return file_; }

    // Remembers the location of an existing file or folder under the key. An
    // absent URL, a web address or a path where nothing exists removes the
    // key instead; a store that cannot be written stays as it was.
    void setSecureURL(const std::optional<URL>& url, std::string_view key) const;

    // The location remembered under the key, or nothing when the key holds
    // none or nothing exists there any more.
    std::optional<URL> secureURL(std::string_view key) const;

private:
    std::filesystem::path file_;
};

}  // namespace vantel
