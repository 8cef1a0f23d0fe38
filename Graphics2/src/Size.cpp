#include <Graphics2/Size.hpp>

#include <Platform/Hashing.hpp>

#include <utility>

namespace vantel {

Size::Size(double width, double height, double margin)
    : width(width), height(height), margin(margin) {}

Size Size::inches(double width, double height, double margin, double at) {
    return {width * at, height * at, margin * at};
}

Size Size::mm(double width, double height, double margin, double at) {
    constexpr double millimetresPerInch = 25.4;
    return {(width / millimetresPerInch) * at, (height / millimetresPerInch) * at,
            (margin / millimetresPerInch) * at};
}

Vector Size::center() const { return Vector::point(width * 0.5, height * 0.5); }

Size Size::landscape() const { return width < height ? Size(height, width, margin) : *this; }
Size Size::portrait() const { return height < width ? Size(height, width, margin) : *this; }

double Size::ratio() const { return width / height; }
double Size::marginRatio() const { return marginWidth() / marginHeight(); }
double Size::marginWidth() const { return width - 2 * margin; }
double Size::marginHeight() const { return height - 2 * margin; }
double Size::longSide() const { return height >= width ? height : width; }
double Size::shortSide() const { return height < width ? height : width; }
double Size::minX() const { return margin; }
double Size::minY() const { return margin; }
double Size::maxX() const { return width - margin; }
double Size::maxY() const { return height - margin; }

Rectangle Size::boundingBox() const {
    return Rectangle(center(), marginWidth(), marginHeight(), Angle());
}

Size Size::decode(const Decoder& decoder) {
    const KeyedDecodingContainer container = decoder.container();
    return {container.decode<double>("width"), container.decode<double>("height"),
            container.decode<double>("margin")};
}

void Size::encode(Encoder& encoder) const {
    KeyedEncodingContainer container = encoder.container();
    container.encode(width, "width");
    container.encode(height, "height");
    container.encode(margin, "margin");
}

}  // namespace vantel

namespace {

}  // namespace

std::size_t std::hash<vantel::Size>::operator()(const vantel::Size& size) const noexcept {
    return vantel::hashOfFields(size.width, size.height, size.margin);
}
