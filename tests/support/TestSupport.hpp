#pragma once

#include <filesystem>
#include <string>

namespace vantel::testing {

// A fresh folder under the system's temporary directory, removed with the object.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

// A file under tests/data (committed fixtures).
std::filesystem::path testDataPath(const std::string& relative);

}  // namespace vantel::testing
