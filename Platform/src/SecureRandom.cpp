#include <Platform/Fatal.hpp>
#include <Platform/SecureRandom.hpp>

#include <sys/random.h>

#include <bit>
#include <cerrno>
#include <cstring>
#include <string>

namespace vantel {

void fillSecureRandom(std::span<std::uint8_t> bytes) {
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        ssize_t got = getrandom(bytes.data() + filled, bytes.size() - filled, 0);
        if (got < 0) {
            if (errno == EINTR) continue;
            fatalError(std::string("The system's random source failed: ") + std::strerror(errno));
        }
        filled += static_cast<std::size_t>(got);
    }
}

SecureRandom::result_type SecureRandom::operator()() const {
    std::uint64_t value = 0;
    fillSecureRandom(std::span(reinterpret_cast<std::uint8_t*>(&value), sizeof value));
    return value;
}

std::uint64_t secureRandomInClosedRange(std::uint64_t low, std::uint64_t high) {
    if (low > high) fatalError("secureRandomInClosedRange: the range is empty");
    std::uint64_t span = high - low;
    if (span == std::numeric_limits<std::uint64_t>::max()) return SecureRandom()();
    // Draw within the smallest power-of-two mask that covers the span and
    // retry above it: every value stays equally likely.
    std::uint64_t mask = span == 0 ? 0 : (~std::uint64_t{0} >> std::countl_zero(span));
    for (;;) {
        std::uint64_t draw = SecureRandom()() & mask;
        if (draw <= span) return low + draw;
    }
}

double secureRandomUnitClosed() {
    constexpr std::uint64_t top = std::uint64_t{1} << 53;
    std::uint64_t k = secureRandomInClosedRange(0, top);
    return k == top ? 1.0 : static_cast<double>(k) * 0x1p-53;
}

}  // namespace vantel
