#include <Platform/Fatal.hpp>

#include <cstdio>
#include <cstdlib>

namespace vantel {

void fatalError(std::string_view message) {
    // Lines a caller printed just before the stop (verbose echoes) would be
    // lost with the unflushed buffer when abort ends the process.
    std::fflush(stdout);
    std::fprintf(stderr, "Fatal error: %.*s\n", static_cast<int>(message.size()), message.data());
    std::fflush(stderr);
    std::abort();
}

}  // namespace vantel
