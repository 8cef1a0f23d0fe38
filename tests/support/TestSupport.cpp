#include "TestSupport.hpp"

#include <Platform/ChildProcess.hpp>

#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace vantel::testing {

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vantel-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("cannot create a temporary folder");
    }
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path testDataPath(const std::string& relative) {
    return std::filesystem::path(VANTEL_TEST_DATA_DIR) / relative;
}

LocalWebServer::LocalWebServer(const std::filesystem::path& root, bool tls) : tls_(tls) {
    PipeDescriptors pipe = makePipe();
    ChildProcessSetup setup;
    setup.executable = "/usr/bin/python3";
    setup.arguments = {testDataPath("../support/http_server.py").string(), root.string()};
    if (tls) setup.arguments.push_back("--tls");
    setup.standardOutput = pipe.writing;
    processId_ = startChildProcess(setup);
    ::close(pipe.writing);
    std::string line;
    char c = 0;
    while (::read(pipe.reading, &c, 1) == 1 && c != '\n') line += c;
    ::close(pipe.reading);
    port_ = std::atoi(line.c_str());
    if (port_ <= 0) {
        ::kill(processId_, SIGTERM);
        waitForChildProcess(processId_);
        throw std::runtime_error("the local web server did not start");
    }
}

LocalWebServer::~LocalWebServer() {
    ::kill(processId_, SIGTERM);
    waitForChildProcess(processId_);
}

std::string LocalWebServer::address(const std::string& path) const {
    return (tls_ ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(port_) + path;
}

}  // namespace vantel::testing
