#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

namespace vantel {

// Why a bitmap could not be rendered. A small value (case plus payload) that
// is also the exception thrown for it, so callers can catch it and compare it
// with an expected case.
class RenderError : public std::runtime_error {
public:
    enum class Case { dimensionIsZero, failedToMakeImage, failedToRenderPNGRepresentation };

    Case kind;
    // Only meaningful for dimensionIsZero: the requested size as given
    // (a negative dimension reports as "zero" too).
    std::int64_t width = 0;
    std::int64_t height = 0;

    static RenderError dimensionIsZero(std::int64_t width, std::int64_t height);
    // `reason`, when given, says why in what() (a bitmap too large to make).
    static RenderError failedToMakeImage(const std::string& reason = {});
    // Raised for every file type, not only PNG: the name is kept as it is.
    static RenderError failedToRenderPNGRepresentation();

    friend bool operator==(const RenderError& a, const RenderError& b) {
        return a.kind == b.kind && a.width == b.width && a.height == b.height;
    }

private:
    RenderError(Case kind, std::int64_t width, std::int64_t height, const std::string& reason = {});
};

}  // namespace vantel

template <>
struct std::hash<vantel::RenderError> {
    std::size_t operator()(const vantel::RenderError& error) const noexcept {
        std::size_t seed = std::hash<int>()(static_cast<int>(error.kind));
        seed = seed * 31 + std::hash<std::int64_t>()(error.width);
        return seed * 31 + std::hash<std::int64_t>()(error.height);
    }
};
