#include <CoreGraphicsRendering/CoreGraphicsRenderer.hpp>

#include <CoreGraphicsRendering/BandedDrawing.hpp>
#include <CoreGraphicsRendering/CairoContext.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>
#include <Graphics2/Size.hpp>
#include <Platform/FileIO.hpp>
#include <Platform/NumberText.hpp>

#include <cctype>
#include <cmath>
#include <filesystem>
#include <string>

namespace vantel {

namespace {

std::int64_t wholePixels(double side) { return truncatedInteger(side, "Sketch size", "whole pixels"); }

// "png" -> "Png", "jpeg2000" -> "Jpeg2000".
std::string capitalised(std::string text) {
    if (!text.empty()) text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text;
}

}  // namespace

CoreGraphicsRenderer::CoreGraphicsRenderer(const Sketch& sketch, CGContext* context, bool debug)
    : CoreGraphicsRenderer(wholePixels(sketch.size().width), wholePixels(sketch.size().height), context,
                           debug) {
    const Drawable body = sketch.body();
    // A bitmap of the renderer's own is still fresh here, so a large one can
    // be drawn in bands on every core, to the same pixels.
    if (bitmap_) {
        drawOnAllCores(*bitmap_, [&body](CGContext& context) { body.draw(context); });
    } else {
        body.draw(*context_);
    }
}

CoreGraphicsRenderer::CoreGraphicsRenderer(std::int64_t width, std::int64_t height, CGContext* context,
                                           bool debug)
    : debug(debug), width_(width), height_(height), context_(context) {
    if (width < 1 || height < 1) throw RenderError::dimensionIsZero(width, height);
    if (context_ != nullptr) return;
    try {
        bitmap_.emplace(width, height);
    } catch (const CairoError& error) {
        // Too large a side or too little memory: a size someone asked for, so
        // the caller can say so instead of the process stopping.
        throw RenderError::failedToMakeImage(std::to_string(width) + " x " + std::to_string(height) +
                                             " pixels is too large a bitmap (" + error.what() + ")");
    }
    context_ = &bitmap_->context();
}

void CoreGraphicsRenderer::addShape(const Drawable& shape) {
    if (debug) {
        shape.debugDraw(*context_);
    } else {
        shape.draw(*context_);
    }
}

void CoreGraphicsRenderer::addShapes(const std::vector<Drawable>& shapes) {
    for (const Drawable& shape : shapes) addShape(shape);
}

Data CoreGraphicsRenderer::render(NSBitmapImageFileType type) const {
    // The renderer's own bitmap, or a bitmap the caller handed in: both are
    // cairo contexts on an image surface.
    const auto* cairo = dynamic_cast<const CairoContext*>(context_);
    std::optional<ImageView> image = cairo != nullptr ? cairo->targetImage() : std::nullopt;
    if (!image) throw RenderError::failedToMakeImage();
    try {
        cairo->checkStatus();
    } catch (const CairoError&) {
        throw RenderError::failedToMakeImage();
    }
    return encodeImage(*image, type);
}

void CoreGraphicsRenderer::writePNG(const URL& url) const { writeImage(NSBitmapImageFileType::png, url); }

void CoreGraphicsRenderer::writeImage(NSBitmapImageFileType type, const URL& url) const {
    std::filesystem::create_directories(url.deletingLastPathComponent().path());
    Data data = render(type);
    writeData(data, url);
}

void CoreGraphicsRenderer::writePNG(std::string_view name, const URL& folder, bool includeSubDir) const {
    writeImage(NSBitmapImageFileType::png, name, folder, includeSubDir);
}

void CoreGraphicsRenderer::writeImage(NSBitmapImageFileType type, std::string_view name, const URL& folder,
                                      bool includeSubDir) const {
    writeImage(type, imageURL(type, name, folder, includeSubDir));
}

URL CoreGraphicsRenderer::imageURL(NSBitmapImageFileType type, std::string_view name, const URL& folder,
                                   bool includeSubDir) {
    std::string extension = fileExtension(type);
    URL url = folder;
    if (includeSubDir) url = url.appendingPathComponent(capitalised(extension), true);
    url = url.appendingPathComponent(name);
    if (url.pathExtension() != extension) url = url.appendingPathExtension(extension);
    return url;
}

}  // namespace vantel
