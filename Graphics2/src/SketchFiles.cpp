#include <Graphics2/SketchFiles.hpp>
#include <Platform/DateText.hpp>
#include <Platform/Digest.hpp>

#include <unistd.h>

#include <system_error>

namespace vantel {

std::string sha1(std::string_view text) {
    return sha1Hex(text);
}

std::string hashedFileName(const Sketch&, std::string_view dateFormat) {
    std::string date = formatNow(dateFormat);
    std::string hash = sha1(std::to_string(getpid()) + "-" + date).substr(0, 8);
    return date + "-" + hash;
}

bool isRootFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::directory_iterator entries(folder, error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
        if (entries->path().filename() == "Package.manifest") return true;
    }
    return false;
}

std::filesystem::path outputFolder(const std::string& path) {
    std::filesystem::path file = std::filesystem::absolute(path).lexically_normal();
    if (!file.has_filename() && file.has_relative_path()) file = file.parent_path();  // "dir/"
    std::filesystem::path folder = file.parent_path();
    while (!isRootFolder(folder) && folder != folder.root_path()) folder = folder.parent_path();
    return folder / "Output";
}

}  // namespace vantel
