#pragma once

#include <Graphics2/Color.hpp>
#include <Graphics2/Drawable.hpp>
#include <Graphics2/Sketch.hpp>
#include <Graphics2/Size.hpp>
#include <OverlayGenerator/AspectRatio.hpp>
#include <OverlayGenerator/Published.hpp>
#include <Platform/Coding.hpp>
#include <Platform/Data.hpp>

#include <string>
#include <vector>

namespace vantel {

// An overlay document: a canvas size with margin, a background colour and the
// top-level guides, drawn in list order. It is a Sketch, so it can be drawn
// into any target or rendered to an image.
//
// The document is shared by reference (not copyable). Its three values are
// Published: read them with size(), backgroundColor(), ratios(); change them
// with the setters, which tell the observers subscribed through published*()
// before the new value is stored.
//
// Coded as {"size", "ratios", "backgroundColor"}; decoding requires "size" and
// "ratios" (an empty list is fine) and takes a clear background when
// "backgroundColor" is absent.
class OverlayGen : public Sketch {
public:
    OverlayGen(int width, int height, int margin, Color backgroundColor, std::vector<AspectRatio> ratios);
    OverlayGen(Size size, Color backgroundColor, std::vector<AspectRatio> ratios);

    OverlayGen(const OverlayGen&) = delete;
    OverlayGen& operator=(const OverlayGen&) = delete;
    OverlayGen(OverlayGen&&) = default;
    OverlayGen& operator=(OverlayGen&&) = default;

    Size size() const override { return size_.get(); }
    const Color& backgroundColor() const { return backgroundColor_.get(); }
    const std::vector<AspectRatio>& ratios() const { return ratios_.get(); }

    void setSize(Size size) { size_.set(std::move(size)); }
    void setBackgroundColor(Color color) { backgroundColor_.set(std::move(color)); }
    void setRatios(std::vector<AspectRatio> ratios) { ratios_.set(std::move(ratios)); }

    Published<Size>& publishedSize() { return size_; }
    Published<Color>& publishedBackgroundColor() { return backgroundColor_; }
    Published<std::vector<AspectRatio>>& publishedRatios() { return ratios_; }

    // [background rectangle, FauxDrawable, [[guide 1 drawing], [guide 2 drawing], ...]].
    // Built afresh on every call; also leaves this thread's layout sizes
    // holding the document size.
    Drawable body() const override;

    // The document as PNG data, drawn by the bitmap renderer; its RenderError
    // (a canvas below one pixel) propagates.
    Data render() const;

    // "overlay_16x9_1x1": each top-level guide's sides truncated to integers.
    // A side that is not finite or does not fit a 64-bit integer stops the process.
    std::string description() const;

    static OverlayGen decode(const Decoder& decoder);
    void encode(Encoder& encoder) const;

    friend bool operator==(const OverlayGen& a, const OverlayGen& b) {
        return a.size() == b.size() && a.backgroundColor() == b.backgroundColor() && a.ratios() == b.ratios();
    }

private:
    Published<Size> size_;
    Published<Color> backgroundColor_;
    Published<std::vector<AspectRatio>> ratios_;
};

}  // namespace vantel
