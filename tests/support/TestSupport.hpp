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

namespace vantel::testing {

// tests/support/http_server.py serving a folder on 127.0.0.1 (https with the
// test certificate when `tls`), stopped with the object.
class LocalWebServer {
public:
    explicit LocalWebServer(const std::filesystem::path& root, bool tls = false);
    ~LocalWebServer();
    LocalWebServer(const LocalWebServer&) = delete;
    LocalWebServer& operator=(const LocalWebServer&) = delete;

    // "http://127.0.0.1:PORT" + path (path starts with "/").
    std::string address(const std::string& path) const;

private:
    int processId_ = -1;
    int port_ = 0;
    bool tls_ = false;
};

}  // namespace vantel::testing
