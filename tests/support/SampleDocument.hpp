#pragma once

// A small document-shaped model for the coder tests: a canvas size, a
// background colour and nested guides, coded like the overlay documents.

#include <Platform/Coding.hpp>
#include <Platform/UUID.hpp>

#include <optional>
#include <vector>

namespace vantel::testing {

struct SampleSize {
    double width = 0, height = 0, margin = 0;

    static SampleSize decode(const Decoder& decoder) {
        auto c = decoder.container();
        return {c.decode<double>("width"), c.decode<double>("height"), c.decode<double>("margin")};
    }
    void encode(Encoder& encoder) const {
        auto c = encoder.container();
        c.encode(width, "width");
        c.encode(height, "height");
        c.encode(margin, "margin");
    }
    friend bool operator==(const SampleSize&, const SampleSize&) = default;
};

struct SampleColor {
    double red = 0, green = 0, blue = 0, alpha = 0;

    static SampleColor decode(const Decoder& decoder) {
        auto c = decoder.container();
        return {c.decode<double>("red"), c.decode<double>("green"), c.decode<double>("blue"),
                c.decode<double>("alpha")};
    }
    void encode(Encoder& encoder) const {
        auto c = encoder.container();
        c.encode(red, "red");
        c.encode(green, "green");
        c.encode(blue, "blue");
        c.encode(alpha, "alpha");
    }
    friend bool operator==(const SampleColor&, const SampleColor&) = default;
};

struct SampleGuide {
    UUID id;
    double width = 0, height = 0;
    SampleColor color;
    std::optional<SampleColor> fillColor;
    double weight = 2;
    std::optional<std::int64_t> rowPixels;  // "rowType": {"pixels": {"_0": n}}
    bool clearParent = true;
    std::optional<std::vector<SampleGuide>> children;

    static SampleGuide decode(const Decoder& decoder) {
        auto c = decoder.container();
        SampleGuide guide;
        guide.id = c.decode<UUID>("id");
        guide.width = c.decode<double>("width");
        guide.height = c.decode<double>("height");
        guide.color = c.decode<SampleColor>("color");
        guide.fillColor = c.decodeIfPresent<SampleColor>("fillColor");
        guide.weight = c.decode<double>("weight");
        if (c.contains("rowType")) {
            auto rowType = c.nestedContainer("rowType");
            if (rowType.contains("pixels")) {
                guide.rowPixels = rowType.nestedContainer("pixels").decode<std::int64_t>("_0");
            }
        }
        guide.clearParent = c.decodeIfPresent<bool>("clearParent").value_or(true);
        guide.children = c.decodeIfPresent<std::vector<SampleGuide>>("children");
        return guide;
    }
    void encode(Encoder& encoder) const {
        auto c = encoder.container();
        c.encode(id, "id");
        c.encode(width, "width");
        c.encode(height, "height");
        c.encode(color, "color");
        c.encodeIfPresent(fillColor, "fillColor");
        c.encode(weight, "weight");
        if (rowPixels) c.nestedContainer("rowType").nestedContainer("pixels").encode(*rowPixels, "_0");
        c.encode(clearParent, "clearParent");
        c.encodeIfPresent(children, "children");
    }
    friend bool operator==(const SampleGuide&, const SampleGuide&) = default;
};

struct SampleDocument {
    SampleSize size;
    std::vector<SampleGuide> ratios;
    SampleColor backgroundColor;

    static SampleDocument decode(const Decoder& decoder) {
        auto c = decoder.container();
        return {c.decode<SampleSize>("size"), c.decode<std::vector<SampleGuide>>("ratios"),
                c.decodeIfPresent<SampleColor>("backgroundColor").value_or(SampleColor{})};
    }
    void encode(Encoder& encoder) const {
        auto c = encoder.container();
        c.encode(size, "size");
        c.encode(ratios, "ratios");
        c.encode(backgroundColor, "backgroundColor");
    }
    friend bool operator==(const SampleDocument&, const SampleDocument&) = default;
};

}  // namespace vantel::testing
