#include "TestSupport.hpp"

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

}  // namespace vantel::testing
