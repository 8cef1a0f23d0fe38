#include <CoreGraphicsRendering/RenderError.hpp>

#include <string>

namespace vantel {

namespace {

std::string message(RenderError::Case kind, std::int64_t width, std::int64_t height) {
    switch (kind) {
        case RenderError::Case::dimensionIsZero:
            return "cannot render an image of " + std::to_string(width) + " x " + std::to_string(height) +
                   " pixels: width and height must be at least 1";
        case RenderError::Case::failedToMakeImage:
            return "failed to make an image from the drawing";
        case RenderError::Case::failedToRenderPNGRepresentation:
            return "failed to encode the image";
    }
    return "unknown render error";
}

}  // namespace

RenderError::RenderError(Case kind, std::int64_t width, std::int64_t height, const std::string& reason)
    : std::runtime_error(reason.empty() ? message(kind, width, height) : message(kind, width, height) + ": " + reason),
      kind(kind), width(width), height(height) {}

RenderError RenderError::dimensionIsZero(std::int64_t width, std::int64_t height) {
    return RenderError(Case::dimensionIsZero, width, height);
}

RenderError RenderError::failedToMakeImage(const std::string& reason) {
    return RenderError(Case::failedToMakeImage, 0, 0, reason);
}

RenderError RenderError::failedToRenderPNGRepresentation() {
    return RenderError(Case::failedToRenderPNGRepresentation, 0, 0);
}

}  // namespace vantel
