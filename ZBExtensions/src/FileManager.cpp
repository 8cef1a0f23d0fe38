#include <ZBExtensions/FileManager.hpp>

#include <filesystem>
#include <system_error>

namespace vantel {

bool fileExists(const URL& url, bool& isDirectory) {
    std::error_code error;
    std::filesystem::file_status status = std::filesystem::status(url.path(), error);
    bool exists = !error && std::filesystem::exists(status);
    isDirectory = exists && std::filesystem::is_directory(status);
    return exists;
}

bool fileIsDirectory(const URL& url) {
    bool isDirectory = false;
    return fileExists(url, isDirectory) && isDirectory;
}

}  // namespace vantel
