#include "OutputSize.hpp"

#include <CLI/CLI.hpp>
#include <OverlayGenerator/DocumentCheck.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <sstream>
#include <variant>
#include <vector>

namespace vantel::cli {

namespace {

void checkPositive(const std::optional<double>& value, const char* option) {
    if (value && !(std::isfinite(*value) && *value > 0)) {
        std::ostringstream text;
        text << *value;
        throw CLI::ValidationError(option, "must be a number above 0, not " + text.str());
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

std::string pixelsText(CGSize size) {
    std::ostringstream text;
    text.precision(17);
    text << size.width << " x " << size.height << " px";
    return text.str();
}

// Past 2^24 a reader that keeps coordinates in single precision no longer
// tells neighbouring pixels apart; an infinite zoom lands here too.
constexpr double maxVectorSide = 16777216;

const char* const smallerSize = "; draw it smaller with --width, --height or --zoom";

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

CGSize outputSize(CGSize canvas, const SizeRequest& request) {
    CGSize size = requestedSize(canvas, request);
    return {std::max(1.0, std::round(size.width)), std::max(1.0, std::round(size.height))};
}

double outputMemory(const OutputFormat& format, CGSize size) {
    const auto* bitmap = std::get_if<BitmapOutput>(&format.kind);
    return bitmap ? encodingMemory(bitmap->type, size.width, size.height) : 0;
}

std::optional<std::string> refusedOutputSize(const OutputFormat& format, CGSize size) {
    if (!(std::max(size.width, size.height) <= maxVectorSide)) {
        return "a " + pixelsText(size) + " " + format.extension + " is larger than the limit of " +
               std::to_string(std::int64_t(maxVectorSide)) + " px a side" + smallerSize;
    }
    // A vector page costs what it holds, not its area: only bitmaps meet
    // the limits below.
    if (!std::holds_alternative<BitmapOutput>(format.kind)) return std::nullopt;
    if (std::max(size.width, size.height) > maxBitmapSide) {
        return "a " + pixelsText(size) + " " + format.extension + " is larger than the limit of " +
               std::to_string(std::int64_t(maxBitmapSide)) + " px a side" + smallerSize;
    }
    if (double bytes = outputMemory(format, size); bytes > maxEncodingMemory) {
        const double mebibyte = 1 << 20;
        return "a " + pixelsText(size) + " " + format.extension + " needs about " +
               std::to_string(std::llround(bytes / mebibyte)) + " MiB to draw and encode, more than the limit of " +
               std::to_string(std::llround(maxEncodingMemory / mebibyte)) + " MiB" + smallerSize;
    }
    return std::nullopt;
}

std::optional<std::string> refusedOutput(const OverlayGen& document, const OutputFormat& format, CGSize size) {
    if (auto refused = refusedOutputSize(format, size)) return refused;
    if (!std::holds_alternative<BitmapOutput>(format.kind)) return std::nullopt;
    std::vector<DocumentProblem> costs = checkDrawingCost(document, size);
    if (!costs.empty()) return costs.front().text() + smallerSize;
    return std::nullopt;
}

}  // namespace vantel::cli
