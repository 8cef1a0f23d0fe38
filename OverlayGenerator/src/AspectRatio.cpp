#include <OverlayGenerator/AspectRatio.hpp>

#include <OverlayGenerator/DecodableDefault.hpp>
#include <Platform/Hashing.hpp>

#include <utility>

namespace vantel {

namespace {

using ClearColor = DecodableDefault::Wrapper<DecodableDefault::Sources::Clear>;
using NoRows = DecodableDefault::Wrapper<DecodableDefault::Sources::NoRows>;
using DefaultTrue = DecodableDefault::Wrapper<DecodableDefault::Sources::True>;

}  // namespace

AspectRatio::AspectRatio(double width, double height, Color color, Color fillColor, double weight,
                         GridType rowType, GridType columnType,
                         std::optional<std::vector<AspectRatio>> children)
    : width(width),
      height(height),
      color(std::move(color)),
      fillColor(std::move(fillColor)),
      weight(weight),
      rowType(rowType),
      columnType(columnType),
      children(std::move(children)) {}

AspectRatio AspectRatio::decode(const Decoder& decoder) {
    KeyedDecodingContainer container = decoder.container();
    AspectRatio ratio;
    ratio.id = container.decode<UUID>("id");
    ratio.width = container.decode<double>("width");
    ratio.height = container.decode<double>("height");
    ratio.color = container.decode<Color>("color");
    ratio.fillColor = ClearColor::decode(container, "fillColor").wrappedValue;
    ratio.weight = container.decode<double>("weight");
    ratio.rowType = NoRows::decode(container, "rowType").wrappedValue;
    ratio.columnType = NoRows::decode(container, "columnType").wrappedValue;
    ratio.clearParent = DefaultTrue::decode(container, "clearParent").wrappedValue;
    ratio.children = container.decodeIfPresent<std::vector<AspectRatio>>("children");
    return ratio;
}

void AspectRatio::encode(Encoder& encoder) const {
    KeyedEncodingContainer container = encoder.container();
    container.encode(id, "id");
    container.encode(width, "width");
    container.encode(height, "height");
    container.encode(color, "color");
    container.encode(ClearColor(fillColor), "fillColor");
    container.encode(weight, "weight");
    container.encode(NoRows(rowType), "rowType");
    container.encode(NoRows(columnType), "columnType");
    container.encode(DefaultTrue(clearParent), "clearParent");
    container.encodeIfPresent(children, "children");
}

}  // namespace vantel

std::size_t std::hash<vantel::AspectRatio>::operator()(const vantel::AspectRatio& ratio) const noexcept {
    using vantel::combineHash;
    std::size_t seed = 0;
    combineHash(seed, ratio.id);
    combineHash(seed, ratio.width);
    combineHash(seed, ratio.height);
    combineHash(seed, ratio.color);
    combineHash(seed, ratio.fillColor);
    combineHash(seed, ratio.weight);
    combineHash(seed, ratio.rowType);
    combineHash(seed, ratio.columnType);
    combineHash(seed, ratio.clearParent);
    combineHash(seed, ratio.children.has_value());
    if (ratio.children) {
        for (const vantel::AspectRatio& child : *ratio.children) combineHash(seed, child);
    }
    return seed;
}
