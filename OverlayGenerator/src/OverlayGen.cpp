#include <OverlayGenerator/OverlayGen.hpp>

#include <Graphics2/Angle.hpp>
#include <Graphics2/GroupDrawable.hpp>
#include <Graphics2/Rectangle.hpp>
#include <OverlayGenerator/FauxDrawable.hpp>
#include <Platform/Fatal.hpp>
#include <Platform/NumberText.hpp>

#include <cmath>
#include <cstdint>
#include <utility>

namespace vantel {

namespace {

std::int64_t truncatedSide(double side) { return truncatedInteger(side, "Guide side"); }

}  // namespace

OverlayGen::OverlayGen(int width, int height, int margin, Color backgroundColor, std::vector<AspectRatio> ratios)
    : OverlayGen(Size(width, height, margin), std::move(backgroundColor), std::move(ratios)) {}

OverlayGen::OverlayGen(Size size, Color backgroundColor, std::vector<AspectRatio> ratios)
    : size_(std::move(size)), backgroundColor_(std::move(backgroundColor)), ratios_(std::move(ratios)) {}

Drawable OverlayGen::body() const {
    const Size canvas = size();
    Drawable background =
        Drawable(Rectangle(canvas, Angle::fromDegrees(0))).fillColor(backgroundColor()).strokeWidth(0.0);

    fittingSize = canvas;
    centeringSize = canvas;
    std::vector<Drawable> guides;
    guides.reserve(ratios().size());
    for (const AspectRatio& ratio : ratios()) {
        guides.push_back(GroupDrawable{std::vector<Drawable>{ratio.drawing(canvas, canvas)}});
    }
    return GroupDrawable{
        std::vector<Drawable>{std::move(background), FauxDrawable{}, GroupDrawable{std::move(guides)}}};
}

std::string OverlayGen::description() const {
    std::string text = "overlay_";
    bool first = true;
    for (const AspectRatio& ratio : ratios()) {
        if (!first) text += "_";
        first = false;
        text += std::to_string(truncatedSide(ratio.width)) + "x" + std::to_string(truncatedSide(ratio.height));
    }
    return text;
}

OverlayGen OverlayGen::decode(const Decoder& decoder) {
    KeyedDecodingContainer container = decoder.container();
    Size size = container.decode<Size>("size");
    auto ratios = container.decode<std::vector<AspectRatio>>("ratios");
    Color background = container.decodeIfPresent<Color>("backgroundColor").value_or(Color::clear());
    return OverlayGen(std::move(size), std::move(background), std::move(ratios));
}

void OverlayGen::encode(Encoder& encoder) const {
    KeyedEncodingContainer container = encoder.container();
    container.encode(size(), "size");
    container.encode(ratios(), "ratios");
    container.encode(backgroundColor(), "backgroundColor");
}

}  // namespace vantel
