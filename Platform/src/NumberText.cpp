#include <Platform/NumberText.hpp>

#include <Platform/Fatal.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace vantel {

namespace {

// Shortest round-trip scientific text with the exponent in two digits at least,
// the form people know from printf ("1e-05", "1.5e+20").
std::string exponentText(double value) {
    std::array<char, 64> buffer{};
    auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::scientific);
    std::string_view text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    auto e = text.find('e');
    std::string_view digits = text.substr(e + 1);
    char sign = '+';
    if (digits.front() == '-' || digits.front() == '+') {
        sign = digits.front();
        digits.remove_prefix(1);
    }
    std::string result(text.substr(0, e));
    result.push_back('e');
    result.push_back(sign);
    if (digits.size() < 2) result.push_back('0');
    result.append(digits);
    return result;
}

}  // namespace

std::string numberText(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    double magnitude = std::fabs(value);
    if (magnitude != 0.0 && (magnitude < 1e-4 || magnitude >= 9007199254740992.0)) return exponentText(value);
    std::array<char, 64> buffer{};
    auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed);
    std::string text(buffer.data(), end);
    if (text.find('.') == std::string::npos) text += ".0";
    return text;
}

std::int64_t truncatedInteger(double value, std::string_view what, std::string_view unit) {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (!std::isfinite(value) || value < -limit || value >= limit) {
        fatalError(std::string(what) + " " + numberText(value) + " cannot be converted to " + std::string(unit));
    }
    return static_cast<std::int64_t>(value);
}

}  // namespace vantel
