#pragma once

#include <CoreGraphicsRendering/BitmapContext.hpp>
#include <CoreGraphicsRendering/ImageEncoding.hpp>
#include <Graphics2/CGContext.hpp>
#include <Graphics2/Drawable.hpp>
#include <Graphics2/Sketch.hpp>
#include <Platform/Data.hpp>
#include <Platform/URL.hpp>

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace vantel {

// Turns a sketch into a raster image: an RGBA bitmap of the sketch's page
// size (origin top left, one unit per pixel) that the body is drawn into, then
// encoded as an image file. It can instead draw into a context the caller
// already has; it then never makes a bitmap of its own, and encodes only a
// context that draws into a bitmap.
class CoreGraphicsRenderer {
public:
    // The page size is truncated to whole pixels (99.9 becomes 99); a side
    // below one pixel throws RenderError::dimensionIsZero, and a bitmap the
    // drawing library cannot make (a side over 32767 pixels, too little
    // memory) RenderError::failedToMakeImage. A size that is not finite or
    // does not fit a 64-bit integer stops the process.
    explicit CoreGraphicsRenderer(const Sketch& sketch, CGContext* context = nullptr, bool debug = false);
    CoreGraphicsRenderer(std::int64_t width, std::int64_t height, CGContext* context, bool debug);

    CoreGraphicsRenderer(const CoreGraphicsRenderer&) = delete;
    CoreGraphicsRenderer& operator=(const CoreGraphicsRenderer&) = delete;

    std::int64_t width() const { return width_; }
    std::int64_t height() const { return height_; }
    CGContext& context() { return *context_; }

    // When true, addShape draws through the drawables' debug drawing.
    bool debug = false;

    void addShape(const Drawable& shape);
    void addShapes(const std::vector<Drawable>& shapes);

    // The pixels drawn so far, encoded. RenderError::failedToMakeImage when
    // the context draws into no bitmap (a PDF page, a recorder) or drawing
    // failed;
    // failedToRenderPNGRepresentation when the encoder fails.
    Data render(NSBitmapImageFileType type = NSBitmapImageFileType::png) const;

    // Write exactly to `url`, creating its folder first (a plain overwrite).
    void writePNG(const URL& url) const;
    void writeImage(NSBitmapImageFileType type, const URL& url) const;

    // Write to folder/name, or folder/Png/name with includeSubDir (the
    // extension capitalised as a folder name), adding the type's extension
    // unless the name already ends in exactly it.
    void writePNG(std::string_view name, const URL& folder, bool includeSubDir) const;
    void writeImage(NSBitmapImageFileType type, std::string_view name, const URL& folder,
                    bool includeSubDir) const;

    // The file a named write goes to.
    static URL imageURL(NSBitmapImageFileType type, std::string_view name, const URL& folder,
                        bool includeSubDir);

private:
    std::int64_t width_;
    std::int64_t height_;
    std::optional<BitmapContext> bitmap_;
    CGContext* context_;
};

}  // namespace vantel
