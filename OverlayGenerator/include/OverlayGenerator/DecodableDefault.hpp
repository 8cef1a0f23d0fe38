#pragma once

// Fields that fall back to a default when their key is missing from a coded
// dictionary. A source names the value type and its default:
//
//     struct True { using Value = bool; static Value defaultValue() { return true; } };
//
// and `Wrapper<Source>` carries one value of that type. The wrapper adds no
// nesting to the coded form: it encodes its bare value, and a container reads
// it with `decode(container, key)`, which gives the default when the key is
// absent and fails (rather than defaulting) when the key holds a value of the
// wrong type.

#include <Graphics2/Color.hpp>
#include <OverlayGenerator/GridType.hpp>
#include <Platform/Coding.hpp>

#include <concepts>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vantel {

template <class S>
concept DecodableDefaultSource = requires {
    typename S::Value;
    { S::defaultValue() } -> std::convertible_to<typename S::Value>;
};

namespace DecodableDefault {

template <DecodableDefaultSource Source>
struct Wrapper {
    using Value = typename Source::Value;

    Value wrappedValue = Source::defaultValue();

    Wrapper() = default;
    Wrapper(Value value) : wrappedValue(std::move(value)) {}  // NOLINT: implicit on purpose

    // The key's value, or the default when the key is absent or null.
    static Wrapper decode(const KeyedDecodingContainer& container, std::string_view key) {
        std::optional<Wrapper> present = container.decodeIfPresent<Wrapper>(key);
        return present ? std::move(*present) : Wrapper();
    }
    static Wrapper decode(const Decoder& decoder) {
        return Wrapper(decoder.singleValueContainer().template decode<Value>());
    }
    void encode(Encoder& encoder) const { encodeValue(wrappedValue, encoder); }

    friend bool operator==(const Wrapper& a, const Wrapper& b) { return a.wrappedValue == b.wrappedValue; }
};

namespace Sources {

struct True {
    using Value = bool;
    static Value defaultValue() { return true; }
};

struct False {
    using Value = bool;
    static Value defaultValue() { return false; }
};

struct EmptyString {
    using Value = std::string;
    static Value defaultValue() { return {}; }
};

template <class List = std::vector<std::string>>
struct EmptyList {
    using Value = List;
    static Value defaultValue() { return {}; }
};

template <class Map = std::map<std::string, std::string>>
struct EmptyMap {
    using Value = Map;
    static Value defaultValue() { return {}; }
};

struct Clear {
    using Value = Color;
    static Value defaultValue() { return Color::clear(); }
};

struct NoRows {
    using Value = GridType;
    static Value defaultValue() { return GridType::none(); }
};

}  // namespace Sources

}  // namespace DecodableDefault
}  // namespace vantel

template <vantel::DecodableDefaultSource Source>
    requires requires(const typename Source::Value& value) { std::hash<typename Source::Value>{}(value); }
struct std::hash<vantel::DecodableDefault::Wrapper<Source>> {
    std::size_t operator()(const vantel::DecodableDefault::Wrapper<Source>& wrapper) const noexcept {
        return std::hash<typename Source::Value>{}(wrapper.wrappedValue);
    }
};
