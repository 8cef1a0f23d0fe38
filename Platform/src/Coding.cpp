#include <Platform/Coding.hpp>
#include <Platform/NumberText.hpp>

#include <cmath>

namespace vantel {

// ---------------------------------------------------------------- values

CodingValue CodingValue::boolean(bool value) { return CodingValue(Storage(value)); }
CodingValue CodingValue::integer(std::int64_t value) { return CodingValue(Storage(value)); }
CodingValue CodingValue::real(double value) { return CodingValue(Storage(value)); }
CodingValue CodingValue::string(std::string value) { return CodingValue(Storage(std::move(value))); }
CodingValue CodingValue::data(Data value) { return CodingValue(Storage(std::move(value))); }
CodingValue CodingValue::array(Array value) { return CodingValue(Storage(std::move(value))); }
CodingValue CodingValue::dictionary(Dictionary value) {
    return CodingValue(Storage(std::move(value)));
}

CodingValue::Kind CodingValue::kind() const {
    return static_cast<Kind>(storage_.index());
}

const CodingValue* CodingValue::find(std::string_view key) const {
    if (kind() != Kind::dictionary) return nullptr;
    for (const auto& [name, value] : asDictionary()) {
        if (name == key) return &value;
    }
    return nullptr;
}

std::string CodingValue::describe(Kind kind) {
    switch (kind) {
        case Kind::null: return "null";
        case Kind::boolean: return "a boolean";
        case Kind::integer: return "an integer";
        case Kind::real: return "a real number";
        case Kind::string: return "a string";
        case Kind::data: return "data";
        case Kind::array: return "an array";
        case Kind::dictionary: return "a dictionary";
    }
    return "an unknown value";
}

// ---------------------------------------------------------------- paths

std::string codingPathText(const CodingPath& path) {
    std::string text;
    for (const CodingKey& key : path) {
        if (key.intValue) {
            text += "[" + std::to_string(*key.intValue) + "]";
        } else {
            if (!text.empty()) text += ".";
            text += key.stringValue;
        }
    }
    return text;
}

// ---------------------------------------------------------------- errors

DecodingError::DecodingError(Kind kind, Context context, std::string expectedType,
                             std::optional<CodingKey> key)
    : kind_(kind), context_(std::move(context)), expectedType_(std::move(expectedType)),
      key_(std::move(key)) {
    std::string where = codingPathText(fullPath());
    message_ = where.empty() ? context_.debugDescription : where + ": " + context_.debugDescription;
}

DecodingError DecodingError::typeMismatch(std::string expectedType, Context context) {
    return DecodingError(Kind::typeMismatch, std::move(context), std::move(expectedType), {});
}

DecodingError DecodingError::valueNotFound(std::string expectedType, Context context) {
    return DecodingError(Kind::valueNotFound, std::move(context), std::move(expectedType), {});
}

DecodingError DecodingError::keyNotFound(CodingKey key, Context context) {
    return DecodingError(Kind::keyNotFound, std::move(context), {}, std::move(key));
}

DecodingError DecodingError::dataCorrupted(Context context) {
    return DecodingError(Kind::dataCorrupted, std::move(context), {}, {});
}

CodingPath DecodingError::fullPath() const {
    CodingPath path = context_.codingPath;
    if (key_) path.push_back(*key_);
    return path;
}

EncodingError::EncodingError(CodingPath path, std::string description) : path_(std::move(path)) {
    std::string where = codingPathText(path_);
    message_ = where.empty() ? description : where + ": " + description;
}

namespace detail {

void throwValueNotFound(const Decoder& decoder, const std::string& expectedType) {
    throw DecodingError::valueNotFound(
        expectedType, {decoder.codingPath(), "Expected " + expectedType + " value but found null instead."});
}

void throwIntegerOutOfRange(const Decoder& decoder, std::int64_t value) {
    throw DecodingError::dataCorrupted(
        {decoder.codingPath(), "Number " + std::to_string(value) + " does not fit in the integer type."});
}

}  // namespace detail

namespace {

[[noreturn]] void throwTypeMismatch(const CodingPath& path, const std::string& expectedType,
                                    const CodingValue& found) {
    throw DecodingError::typeMismatch(
        expectedType, {path, "Expected to decode " + expectedType + " but found " +
                                 CodingValue::describe(found.kind()) + " instead."});
}

CodingPath appended(const CodingPath& path, CodingKey key) {
    CodingPath result = path;
    result.push_back(std::move(key));
    return result;
}

// The nearest integer type range check for a double: [-2^63, 2^63).
bool fitsInt64(double value) {
    return value >= -9223372036854775808.0 && value < 9223372036854775808.0;
}

}  // namespace

// ---------------------------------------------------------------- decoding

KeyedDecodingContainer Decoder::container() const {
    if (value_->kind() != CodingValue::Kind::dictionary) {
        throwTypeMismatch(path_, "Dictionary", *value_);
    }
    return KeyedDecodingContainer(*value_, path_);
}

UnkeyedDecodingContainer Decoder::unkeyedContainer() const {
    if (value_->kind() != CodingValue::Kind::array) throwTypeMismatch(path_, "Array", *value_);
    return UnkeyedDecodingContainer(*value_, path_);
}

SingleValueDecodingContainer Decoder::singleValueContainer() const {
    return SingleValueDecodingContainer(*this);
}

bool SingleValueDecodingContainer::decodeNil() const { return decoder_.value().isNull(); }

bool SingleValueDecodingContainer::decodeBool() const {
    const CodingValue& value = decoder_.value();
    if (value.kind() != CodingValue::Kind::boolean) throwTypeMismatch(codingPath(), "Bool", value);
    return value.asBoolean();
}

std::int64_t SingleValueDecodingContainer::decodeInt64() const {
    const CodingValue& value = decoder_.value();
    if (value.kind() == CodingValue::Kind::integer) return value.asInteger();
    if (value.kind() != CodingValue::Kind::real) throwTypeMismatch(codingPath(), "Int", value);
    double real = value.asReal();
    if (!std::isfinite(real) || std::trunc(real) != real || !fitsInt64(real)) {
        throw DecodingError::dataCorrupted(
            {codingPath(), "Number " + numberText(real) + " does not fit in Int."});
    }
    return static_cast<std::int64_t>(real);
}

double SingleValueDecodingContainer::decodeDouble() const {
    const CodingValue& value = decoder_.value();
    if (value.kind() == CodingValue::Kind::real) return value.asReal();
    if (value.kind() == CodingValue::Kind::integer) return static_cast<double>(value.asInteger());
    throwTypeMismatch(codingPath(), "Double", value);
}

std::string SingleValueDecodingContainer::decodeString() const {
    const CodingValue& value = decoder_.value();
    if (value.kind() != CodingValue::Kind::string) throwTypeMismatch(codingPath(), "String", value);
    return value.asString();
}

Data SingleValueDecodingContainer::decodeData() const {
    const CodingValue& value = decoder_.value();
    if (value.kind() != CodingValue::Kind::data) throwTypeMismatch(codingPath(), "Data", value);
    return value.asData();
}

KeyedDecodingContainer::KeyedDecodingContainer(const CodingValue& dictionary, CodingPath path)
    : dictionary_(&dictionary), path_(std::move(path)) {}

std::vector<std::string> KeyedDecodingContainer::allKeys() const {
    std::vector<std::string> keys;
    for (const auto& entry : dictionary_->asDictionary()) keys.push_back(entry.first);
    return keys;
}

std::string onlyCaseKey(const KeyedDecodingContainer& container, std::string_view typeName,
                        const std::vector<std::string>& keys) {
    if (keys.size() != 1) {
        throw DecodingError::typeMismatch(std::string(typeName),
                                          {container.codingPath(), "Invalid number of keys found, expected one."});
    }
    return keys.front();
}

bool KeyedDecodingContainer::contains(std::string_view key) const {
    return dictionary_->find(key) != nullptr;
}

bool KeyedDecodingContainer::decodeNil(std::string_view key) const {
    return superDecoder(key).value().isNull();
}

KeyedDecodingContainer KeyedDecodingContainer::nestedContainer(std::string_view key) const {
    return superDecoder(key).container();
}

UnkeyedDecodingContainer KeyedDecodingContainer::nestedUnkeyedContainer(std::string_view key) const {
    return superDecoder(key).unkeyedContainer();
}

Decoder KeyedDecodingContainer::superDecoder(std::string_view key) const {
    const CodingValue* found = dictionary_->find(key);
    if (found == nullptr) {
        std::string name(key);
        throw DecodingError::keyNotFound(
            CodingKey::named(name), {path_, "No value associated with key \"" + name + "\"."});
    }
    return Decoder(*found, childPath(key));
}

CodingPath KeyedDecodingContainer::childPath(std::string_view key) const {
    return appended(path_, CodingKey::named(std::string(key)));
}

UnkeyedDecodingContainer::UnkeyedDecodingContainer(const CodingValue& array, CodingPath path)
    : array_(&array), path_(std::move(path)) {}

std::size_t UnkeyedDecodingContainer::count() const { return array_->asArray().size(); }

bool UnkeyedDecodingContainer::decodeNil() {
    if (isAtEnd() || !array_->asArray()[index_].isNull()) return false;
    ++index_;
    return true;
}

KeyedDecodingContainer UnkeyedDecodingContainer::nestedContainer() {
    KeyedDecodingContainer nested = nextDecoder().container();
    ++index_;
    return nested;
}

UnkeyedDecodingContainer UnkeyedDecodingContainer::nestedUnkeyedContainer() {
    UnkeyedDecodingContainer nested = nextDecoder().unkeyedContainer();
    ++index_;
    return nested;
}

Decoder UnkeyedDecodingContainer::nextDecoder() const {
    CodingPath path = appended(path_, CodingKey::index(static_cast<std::int64_t>(index_)));
    if (isAtEnd()) {
        throw DecodingError::valueNotFound("Value", {path, "Unkeyed container is at end."});
    }
    return Decoder(array_->asArray()[index_], std::move(path));
}

// ---------------------------------------------------------------- encoding

namespace detail {

// Encoding builds its own tree of heap nodes so that a container opened
// earlier stays valid while siblings are added; finish() turns it into a
// CodingValue.
struct EncodingNode {
    enum class Shape { empty, leaf, array, dictionary };
    Shape shape = Shape::empty;
    CodingValue leaf;
    std::vector<std::unique_ptr<EncodingNode>> items;
    std::vector<std::pair<std::string, std::unique_ptr<EncodingNode>>> entries;

    void becomeLeaf(CodingValue value) {
        shape = Shape::leaf;
        leaf = std::move(value);
        items.clear();
        entries.clear();
    }

    void becomeArray() {
        if (shape != Shape::array) {
            shape = Shape::array;
            entries.clear();
        }
    }

    void becomeDictionary() {
        if (shape != Shape::dictionary) {
            shape = Shape::dictionary;
            items.clear();
        }
    }

    EncodingNode& slot(std::string_view key) {
        becomeDictionary();
        for (auto& [name, node] : entries) {
            if (name == key) {
                node = std::make_unique<EncodingNode>();
                return *node;
            }
        }
        entries.emplace_back(std::string(key), std::make_unique<EncodingNode>());
        return *entries.back().second;
    }

    EncodingNode& append() {
        becomeArray();
        items.push_back(std::make_unique<EncodingNode>());
        return *items.back();
    }

    CodingValue finish() const {
        switch (shape) {
            case Shape::empty: return CodingValue::dictionary();
            case Shape::leaf: return leaf;
            case Shape::array: {
                CodingValue::Array array;
                array.reserve(items.size());
                for (const auto& item : items) array.push_back(item->finish());
                return CodingValue::array(std::move(array));
            }
            case Shape::dictionary: {
                CodingValue::Dictionary dictionary;
                dictionary.reserve(entries.size());
                for (const auto& [name, node] : entries) dictionary.emplace_back(name, node->finish());
                return CodingValue::dictionary(std::move(dictionary));
            }
        }
        return {};
    }
};

}  // namespace detail

KeyedEncodingContainer Encoder::container() {
    node_->becomeDictionary();
    return KeyedEncodingContainer(*node_, path_);
}

UnkeyedEncodingContainer Encoder::unkeyedContainer() {
    node_->becomeArray();
    return UnkeyedEncodingContainer(*node_, path_);
}

SingleValueEncodingContainer Encoder::singleValueContainer() {
    return SingleValueEncodingContainer(*node_, path_);
}

void SingleValueEncodingContainer::encodeNil() { node_->becomeLeaf(CodingValue()); }
void SingleValueEncodingContainer::encode(bool value) { node_->becomeLeaf(CodingValue::boolean(value)); }
void SingleValueEncodingContainer::encode(std::int64_t value) {
    node_->becomeLeaf(CodingValue::integer(value));
}
void SingleValueEncodingContainer::encode(double value) { node_->becomeLeaf(CodingValue::real(value)); }
void SingleValueEncodingContainer::encode(std::string value) {
    node_->becomeLeaf(CodingValue::string(std::move(value)));
}
void SingleValueEncodingContainer::encode(Data value) {
    node_->becomeLeaf(CodingValue::data(std::move(value)));
}

void KeyedEncodingContainer::encodeNil(std::string_view key) {
    superEncoder(key).singleValueContainer().encodeNil();
}

KeyedEncodingContainer KeyedEncodingContainer::nestedContainer(std::string_view key) {
    return superEncoder(key).container();
}

UnkeyedEncodingContainer KeyedEncodingContainer::nestedUnkeyedContainer(std::string_view key) {
    return superEncoder(key).unkeyedContainer();
}

Encoder KeyedEncodingContainer::superEncoder(std::string_view key) {
    return Encoder(node_->slot(key), appended(path_, CodingKey::named(std::string(key))));
}

std::size_t UnkeyedEncodingContainer::count() const { return node_->items.size(); }

void UnkeyedEncodingContainer::encodeNil() { nextEncoder().singleValueContainer().encodeNil(); }

KeyedEncodingContainer UnkeyedEncodingContainer::nestedContainer() {
    return nextEncoder().container();
}

UnkeyedEncodingContainer UnkeyedEncodingContainer::nestedUnkeyedContainer() {
    return nextEncoder().unkeyedContainer();
}

Encoder UnkeyedEncodingContainer::nextEncoder() {
    auto position = static_cast<std::int64_t>(node_->items.size());
    return Encoder(node_->append(), appended(path_, CodingKey::index(position)));
}

EncodingTree::EncodingTree() : root_(std::make_unique<detail::EncodingNode>()) {}
EncodingTree::~EncodingTree() = default;
EncodingTree::EncodingTree(EncodingTree&&) noexcept = default;
EncodingTree& EncodingTree::operator=(EncodingTree&&) noexcept = default;

Encoder EncodingTree::rootEncoder() { return Encoder(*root_, {}); }

CodingValue EncodingTree::finish() const { return root_->finish(); }

}  // namespace vantel
