#include "OutputSize.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace vantel::cli {

namespace {

void checkPositive(const std::optional<double>& value, const char* option) {
    if (value && !(std::isfinite(*value) && *value > 0)) {
        std::ostringstream text;
        text << *value;
        throw CLI::ValidationError(option, "must be a number above 0, not " + text.str());
    }
}

}  // namespace

void checkSizeRequest(const SizeRequest& request) {
    checkPositive(request.width, "--width");
    checkPositive(request.height, "--height");
    checkPositive(request.zoom, "--zoom");
    if (request.zoom && (request.width || request.height)) {
        throw CLI::ValidationError("--zoom", "scales the canvas; give it without --width or --height");
    }
    if (request.stretch && !(request.width && request.height)) {
        throw CLI::ValidationError("--stretch", "needs both --width and --height");
    }
}

CGSize requestedSize(CGSize canvas, const SizeRequest& request) {
    if (request.zoom) return {canvas.width * *request.zoom, canvas.height * *request.zoom};
    if (request.width && request.height) {
        if (request.stretch) return {*request.width, *request.height};
        double scale = std::min(*request.width / canvas.width, *request.height / canvas.height);
        return {canvas.width * scale, canvas.height * scale};
    }
    if (request.width) return {*request.width, canvas.height * *request.width / canvas.width};
    if (request.height) return {canvas.width * *request.height / canvas.height, *request.height};
    return canvas;
}

CGSize requestedPixelSize(CGSize canvas, const SizeRequest& request) {
    CGSize size = requestedSize(canvas, request);
    return {std::max(1.0, std::round(size.width)), std::max(1.0, std::round(size.height))};
}

}  // namespace vantel::cli
