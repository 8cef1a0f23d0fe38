#pragma once

// Format-neutral coding: values read from property lists or JSON land in a
// CodingValue tree; types decode themselves from a Decoder positioned in that
// tree and encode themselves into an Encoder. The format front ends
// (PropertyListDecoder, JSONDecoder, ...) live in their own headers.
//
// A type takes part by declaring
//     static T decode(const Decoder&);
//     void encode(Encoder&) const;
// bool, integers, double, std::string, Data, std::vector<T> and std::optional<T>
// are built in.

#include <Platform/Data.hpp>

#include <concepts>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace vantel {

// ---------------------------------------------------------------- values

class CodingValue {
public:
    using Array = std::vector<CodingValue>;
    using Dictionary = std::vector<std::pair<std::string, CodingValue>>;  // keeps key order
    enum class Kind { null, boolean, integer, real, string, data, array, dictionary };

    CodingValue() = default;  // null
    static CodingValue boolean(bool value);
    static CodingValue integer(std::int64_t value);
    static CodingValue real(double value);
    static CodingValue string(std::string value);
    static CodingValue data(Data value);
    static CodingValue array(Array value = {});
    static CodingValue dictionary(Dictionary value = {});

    Kind kind() const;
    bool isNull() const { return kind() == Kind::null; }

    // Unchecked accessors: call only after kind() says so.
    bool asBoolean() const { return std::get<bool>(storage_); }
    std::int64_t asInteger() const { return std::get<std::int64_t>(storage_); }
    double asReal() const { return std::get<double>(storage_); }
    const std::string& asString() const { return std::get<std::string>(storage_); }
    const Data& asData() const { return std::get<Data>(storage_); }
    const Array& asArray() const { return std::get<Array>(storage_); }
    Array& asArray() { return std::get<Array>(storage_); }
    const Dictionary& asDictionary() const { return std::get<Dictionary>(storage_); }
    Dictionary& asDictionary() { return std::get<Dictionary>(storage_); }

    // The value under key in a dictionary, or null when absent (or not a dictionary).
    const CodingValue* find(std::string_view key) const;

    // Human name of the kind for messages: "a string", "a dictionary", ...
    static std::string describe(Kind kind);

    friend bool operator==(const CodingValue&, const CodingValue&) = default;

private:
    using Storage = std::variant<std::monostate, bool, std::int64_t, double, std::string, Data,
                                 Array, Dictionary>;
    explicit CodingValue(Storage storage) : storage_(std::move(storage)) {}
    Storage storage_;
};

// ---------------------------------------------------------------- paths

struct CodingKey {
    std::string stringValue;
    std::optional<std::int64_t> intValue;  // set for array positions

    static CodingKey named(std::string name) { return {std::move(name), std::nullopt}; }
    static CodingKey index(std::int64_t position) {
        return {"Index " + std::to_string(position), position};
    }
    friend bool operator==(const CodingKey&, const CodingKey&) = default;
};

using CodingPath = std::vector<CodingKey>;

// "ratios[2].rowType"; the empty path reads "" .
std::string codingPathText(const CodingPath& path);

// ---------------------------------------------------------------- errors

// The four ways decoding fails, each with the coding path where it failed.
// what() is one line: "<path>: <description>" (just the description at the
// root), e.g. ratios[0].weight: No value associated with key "weight".
class DecodingError : public std::exception {
public:
    enum class Kind { typeMismatch, valueNotFound, keyNotFound, dataCorrupted };
    struct Context {
        CodingPath codingPath;
        std::string debugDescription;
        friend bool operator==(const Context&, const Context&) = default;
    };

    // expectedType names the type wanted ("Double", "Dictionary", ...).
    static DecodingError typeMismatch(std::string expectedType, Context context);
    static DecodingError valueNotFound(std::string expectedType, Context context);
    // The context's path is the container's; the key is appended for the message.
    static DecodingError keyNotFound(CodingKey key, Context context);
    static DecodingError dataCorrupted(Context context);

    Kind kind() const { return kind_; }
    const Context& context() const { return context_; }
    const std::string& expectedType() const { return expectedType_; }  // empty for the other kinds
    const std::optional<CodingKey>& key() const { return key_; }      // keyNotFound only
    // The path of the failing value, the missing key included.
    CodingPath fullPath() const;
    const char* what() const noexcept override { return message_.c_str(); }

    friend bool operator==(const DecodingError& a, const DecodingError& b) {
        return a.kind_ == b.kind_ && a.context_ == b.context_ &&
               a.expectedType_ == b.expectedType_ && a.key_ == b.key_;
    }

private:
    DecodingError(Kind kind, Context context, std::string expectedType,
                  std::optional<CodingKey> key);
    Kind kind_;
    Context context_;
    std::string expectedType_;
    std::optional<CodingKey> key_;
    std::string message_;
};

// Thrown when a value cannot be encoded (for example a NaN into JSON).
class EncodingError : public std::exception {
public:
    EncodingError(CodingPath path, std::string description);
    const CodingPath& codingPath() const { return path_; }
    const char* what() const noexcept override { return message_.c_str(); }

private:
    CodingPath path_;
    std::string message_;
};

// ---------------------------------------------------------------- decoding

class KeyedDecodingContainer;
class UnkeyedDecodingContainer;
class SingleValueDecodingContainer;

// A position in a decoded tree. Cheap to copy; the tree must outlive it.
class Decoder {
public:
    Decoder(const CodingValue& value, CodingPath path) : value_(&value), path_(std::move(path)) {}

    const CodingPath& codingPath() const { return path_; }
    const CodingValue& value() const { return *value_; }

    KeyedDecodingContainer container() const;             // typeMismatch unless a dictionary
    UnkeyedDecodingContainer unkeyedContainer() const;    // typeMismatch unless an array
    SingleValueDecodingContainer singleValueContainer() const;

private:
    const CodingValue* value_;
    CodingPath path_;
};

template <class T>
T decodeValue(const Decoder& decoder);

class SingleValueDecodingContainer {
public:
    explicit SingleValueDecodingContainer(Decoder decoder) : decoder_(std::move(decoder)) {}
    const CodingPath& codingPath() const { return decoder_.codingPath(); }

    bool decodeNil() const;
    bool decodeBool() const;
    std::int64_t decodeInt64() const;  // a real only when integral and in range
    double decodeDouble() const;       // integers too
    std::string decodeString() const;
    Data decodeData() const;

    template <class T>
    T decode() const { return decodeValue<T>(decoder_); }

private:
    Decoder decoder_;
};

class KeyedDecodingContainer {
public:
    KeyedDecodingContainer(const CodingValue& dictionary, CodingPath path);
    const CodingPath& codingPath() const { return path_; }

    std::vector<std::string> allKeys() const;
    bool contains(std::string_view key) const;
    bool decodeNil(std::string_view key) const;  // keyNotFound when absent

    // keyNotFound when absent, valueNotFound when null, else T's own errors.
    template <class T>
    T decode(std::string_view key) const { return decodeValue<T>(superDecoder(key)); }

    // Absent or null gives nullopt; a present value of the wrong type is an error.
    template <class T>
    std::optional<T> decodeIfPresent(std::string_view key) const {
        const CodingValue* found = dictionary_->find(key);
        if (found == nullptr || found->isNull()) return std::nullopt;
        return decodeValue<T>(Decoder(*found, childPath(key)));
    }

    KeyedDecodingContainer nestedContainer(std::string_view key) const;
    UnkeyedDecodingContainer nestedUnkeyedContainer(std::string_view key) const;
    // The decoder of the value under key; keyNotFound when absent.
    Decoder superDecoder(std::string_view key) const;

private:
    CodingPath childPath(std::string_view key) const;
    const CodingValue* dictionary_;
    CodingPath path_;
};

class UnkeyedDecodingContainer {
public:
    UnkeyedDecodingContainer(const CodingValue& array, CodingPath path);
    const CodingPath& codingPath() const { return path_; }

    std::size_t count() const;
    std::size_t currentIndex() const { return index_; }
    bool isAtEnd() const { return index_ >= count(); }

    bool decodeNil();  // advances only when the value is null

    // valueNotFound at the end or on null; advances on success.
    template <class T>
    T decode() {
        T value = decodeValue<T>(nextDecoder());
        ++index_;
        return value;
    }

    template <class T>
    std::optional<T> decodeIfPresent() {
        if (isAtEnd()) return std::nullopt;
        if (decodeNil()) return std::nullopt;
        return decode<T>();
    }

    KeyedDecodingContainer nestedContainer();
    UnkeyedDecodingContainer nestedUnkeyedContainer();

private:
    Decoder nextDecoder() const;  // valueNotFound at the end
    const CodingValue* array_;
    CodingPath path_;
    std::size_t index_ = 0;
};

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

// ---------------------------------------------------------------- dispatch

template <class T>
struct IsVector : std::false_type {};
template <class T, class A>
struct IsVector<std::vector<T, A>> : std::true_type {};
template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};

template <class T>
concept SelfDecodable = requires(const Decoder& decoder) {
    { T::decode(decoder) } -> std::same_as<T>;
};
template <class T>
concept SelfEncodable = requires(const T& value, Encoder& encoder) { value.encode(encoder); };

// Name of T in type-mismatch messages ("Double", "Int", "String", ...).
template <class T>
std::string codingTypeName() {
    if constexpr (std::is_same_v<T, bool>) return "Bool";
    else if constexpr (std::is_integral_v<T>) return "Int";
    else if constexpr (std::is_floating_point_v<T>) return "Double";
    else if constexpr (std::is_same_v<T, std::string>) return "String";
    else if constexpr (std::is_same_v<T, Data>) return "Data";
    else if constexpr (IsVector<T>::value) return "Array";
    else return "Dictionary";
}

namespace detail {
[[noreturn]] void throwValueNotFound(const Decoder& decoder, const std::string& expectedType);
[[noreturn]] void throwIntegerOutOfRange(const Decoder& decoder, std::int64_t value);
}  // namespace detail

template <class T>
T decodeValue(const Decoder& decoder) {
    if constexpr (IsOptional<T>::value) {
        if (decoder.value().isNull()) return std::nullopt;
        return decodeValue<typename T::value_type>(decoder);
    } else {
        if (decoder.value().isNull()) detail::throwValueNotFound(decoder, codingTypeName<T>());
        SingleValueDecodingContainer single(decoder);
        if constexpr (std::is_same_v<T, bool>) {
            return single.decodeBool();
        } else if constexpr (std::is_integral_v<T>) {
            std::int64_t wide = single.decodeInt64();
            if (!std::in_range<T>(wide)) detail::throwIntegerOutOfRange(decoder, wide);
            return static_cast<T>(wide);
        } else if constexpr (std::is_floating_point_v<T>) {
            return static_cast<T>(single.decodeDouble());
        } else if constexpr (std::is_same_v<T, std::string>) {
            return single.decodeString();
        } else if constexpr (std::is_same_v<T, Data>) {
            return single.decodeData();
        } else if constexpr (IsVector<T>::value) {
            UnkeyedDecodingContainer items = decoder.unkeyedContainer();
            T result;
            result.reserve(items.count());
            while (!items.isAtEnd()) result.push_back(items.decode<typename T::value_type>());
            return result;
        } else {
            static_assert(SelfDecodable<T>, "declare static T decode(const Decoder&)");
            return T::decode(decoder);
        }
    }
}

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

}  // namespace vantel
