#pragma once

// Decoding from a CodingValue tree: a type declares
//     static T decode(const Decoder&);
// and bool, integers, double, std::string, Data, std::vector<T> and
// std::optional<T> are built in. The format front ends (PropertyListDecoder,
// JSONDecoder) get their decode<T>() from DecodingFrontEnd.

#include <Platform/CodingValue.hpp>
#include <Platform/ContainerTraits.hpp>

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace vantel {

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

template <class T>
concept SelfDecodable = requires(const Decoder& decoder) {
    { T::decode(decoder) } -> std::same_as<T>;
};

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

// The keyed form of an enumeration holds one key, naming the case, over the
// case's associated values. `keys` are those of the container's keys that
// the type considers; anything but exactly one of them is a typeMismatch of
// `typeName` with "Invalid number of keys found, expected one.". Returns the key.
std::string onlyCaseKey(const KeyedDecodingContainer& container, std::string_view typeName,
                        const std::vector<std::string>& keys);

// decode<T>(bytes) for a front end that can parse bytes into a tree.
template <class Parser>
class DecodingFrontEnd {
public:
    template <class T>
    T decode(const Data& bytes) const {
        CodingValue root = static_cast<const Parser&>(*this).parse(bytes);
        return decodeValue<T>(Decoder(root, {}));
    }
};

}  // namespace vantel
