#pragma once

// Encoding into a CodingValue tree: a type declares
//     void encode(Encoder&) const;
// and bool, integers, double, std::string, Data, std::vector<T> and
// std::optional<T> are built in. The format front ends get their
// encode<T>() from EncodingFrontEnd.

#include <Platform/CodingValue.hpp>
#include <Platform/ContainerTraits.hpp>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace vantel {

// ---------------------------------------------------------------- encoding

namespace detail {
struct EncodingNode;
}

class KeyedEncodingContainer;
class UnkeyedEncodingContainer;
class SingleValueEncodingContainer;

// Where one value is being encoded. Containers opened from it stay valid
// while sibling values are added.
class Encoder {
public:
    Encoder(detail::EncodingNode& node, CodingPath path) : node_(&node), path_(std::move(path)) {}

    const CodingPath& codingPath() const { return path_; }
    KeyedEncodingContainer container();
    UnkeyedEncodingContainer unkeyedContainer();
    SingleValueEncodingContainer singleValueContainer();

private:
    detail::EncodingNode* node_;
    CodingPath path_;
};

template <class T>
void encodeValue(const T& value, Encoder& encoder);

class SingleValueEncodingContainer {
public:
    SingleValueEncodingContainer(detail::EncodingNode& node, CodingPath path)
        : node_(&node), path_(std::move(path)) {}
    const CodingPath& codingPath() const { return path_; }

    void encodeNil();
    void encode(bool value);
    void encode(std::int64_t value);
    void encode(double value);
    void encode(std::string value);
    // Without this a string literal would convert to bool, silently.
    void encode(const char* value) { encode(std::string(value)); }
    void encode(Data value);

private:
    detail::EncodingNode* node_;
    CodingPath path_;
};

class KeyedEncodingContainer {
public:
    KeyedEncodingContainer(detail::EncodingNode& node, CodingPath path)
        : node_(&node), path_(std::move(path)) {}
    const CodingPath& codingPath() const { return path_; }

    template <class T>
    void encode(const T& value, std::string_view key) {
        Encoder encoder = superEncoder(key);
        encodeValue(value, encoder);
    }
    template <class T>
    void encodeIfPresent(const std::optional<T>& value, std::string_view key) {
        if (value) encode(*value, key);
    }
    void encodeNil(std::string_view key);

    KeyedEncodingContainer nestedContainer(std::string_view key);
    UnkeyedEncodingContainer nestedUnkeyedContainer(std::string_view key);
    // A fresh slot under key (replacing an earlier value of that key).
    Encoder superEncoder(std::string_view key);

private:
    detail::EncodingNode* node_;
    CodingPath path_;
};

class UnkeyedEncodingContainer {
public:
    UnkeyedEncodingContainer(detail::EncodingNode& node, CodingPath path)
        : node_(&node), path_(std::move(path)) {}
    const CodingPath& codingPath() const { return path_; }
    std::size_t count() const;

    template <class T>
    void encode(const T& value) {
        Encoder encoder = nextEncoder();
        encodeValue(value, encoder);
    }
    void encodeNil();
    KeyedEncodingContainer nestedContainer();
    UnkeyedEncodingContainer nestedUnkeyedContainer();

private:
    Encoder nextEncoder();
    detail::EncodingNode* node_;
    CodingPath path_;
};

// Encodes one value into a fresh tree: the common first step of every encoder.
class EncodingTree {
public:
    EncodingTree();
    ~EncodingTree();
    EncodingTree(EncodingTree&&) noexcept;
    EncodingTree& operator=(EncodingTree&&) noexcept;

    Encoder rootEncoder();
    // The finished tree; a value that encoded nothing becomes an empty dictionary.
    CodingValue finish() const;

private:
    std::unique_ptr<detail::EncodingNode> root_;
};

template <class T>
CodingValue encodeToTree(const T& value) {
    EncodingTree tree;
    Encoder encoder = tree.rootEncoder();
    encodeValue(value, encoder);
    return tree.finish();
}

template <class T>
concept SelfEncodable = requires(const T& value, Encoder& encoder) { value.encode(encoder); };

template <class T>
void encodeValue(const T& value, Encoder& encoder) {
    if constexpr (IsOptional<T>::value) {
        if (value) encodeValue(*value, encoder);
        else encoder.singleValueContainer().encodeNil();
    } else if constexpr (std::is_same_v<T, bool>) {
        encoder.singleValueContainer().encode(value);
    } else if constexpr (std::is_integral_v<T>) {
        encoder.singleValueContainer().encode(static_cast<std::int64_t>(value));
    } else if constexpr (std::is_floating_point_v<T>) {
        encoder.singleValueContainer().encode(static_cast<double>(value));
    } else if constexpr (std::is_convertible_v<const T&, std::string_view> &&
                         !std::is_same_v<T, Data>) {
        encoder.singleValueContainer().encode(std::string(std::string_view(value)));
    } else if constexpr (std::is_same_v<T, Data>) {
        encoder.singleValueContainer().encode(value);
    } else if constexpr (IsVector<T>::value) {
        UnkeyedEncodingContainer items = encoder.unkeyedContainer();
        for (const auto& item : value) items.encode(item);
    } else {
        static_assert(SelfEncodable<T>, "declare void encode(Encoder&) const");
        value.encode(encoder);
    }
}

// encode<T>(value) for a front end that can serialise a tree.
template <class Serializer>
class EncodingFrontEnd {
public:
    template <class T>
    Data encode(const T& value) const {
        return static_cast<const Serializer&>(*this).serialize(encodeToTree(value));
    }
};

}  // namespace vantel
