#include <Platform/PropertyList.hpp>

#include "CodingTreeBuilder.hpp"
#include "PropertyListShape.hpp"

#include <plist/plist.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace vantel {

namespace {

// Property lists have no null; like the platform's coders we stand a marker
// string in for it.
constexpr std::string_view nullMarker = "$null";

// Plist dates count seconds from 2001-01-01 00:00:00 UTC, as our reals do.
constexpr double microsecondsPerSecond = 1'000'000.0;

struct PlistFree {
    void operator()(plist_t node) const { plist_free(node); }
};
using PlistHandle = std::unique_ptr<void, PlistFree>;

// `reason`, when known, follows the plain statement: a list refused for its
// nesting or size is otherwise hard to tell from a damaged one.
[[noreturn]] void throwNotAPropertyList(const std::string& reason = {}) {
    std::string description = "The given data was not a valid property list.";
    if (!reason.empty()) description += " " + reason;
    throw DecodingError::dataCorrupted({{}, std::move(description)});
}

bool looksBinary(const Data& bytes) {
    constexpr std::string_view magic = "bplist";
    return bytes.size() >= magic.size() && std::equal(magic.begin(), magic.end(), bytes.begin());
}

// The values a document may expand to. A binary list without shared
// containers spends at least one reference (two bytes once it has more than
// 255 objects) per value; more values than that mean objects are expanded
// many times over. Every real document stays far below the base.
detail::PropertyListLimits limitsFor(const Data& bytes) {
    constexpr std::size_t baseNodes = 1'000'000;
    constexpr std::size_t bytesPerNode = 2;
    constexpr std::size_t ceiling = std::numeric_limits<std::uint32_t>::max();
    return {detail::maximumNestingDepth, std::min(ceiling, baseNodes + bytes.size() / bytesPerNode)};
}

PlistHandle parsePlist(const Data& bytes) {
    if (bytes.empty() || bytes.size() > std::numeric_limits<std::uint32_t>::max()) throwNotAPropertyList();
    detail::PropertyListLimits limits = limitsFor(bytes);
    bool binary = looksBinary(bytes);
    auto refused = binary ? detail::checkBinaryPropertyListShape(bytes, limits)
                          : detail::checkXMLPropertyListShape(bytes, limits);
    if (refused && refused->codingPath.empty()) throwNotAPropertyList(refused->description);
    if (refused) throw DecodingError::dataCorrupted({refused->codingPath, refused->description});
    plist_t root = nullptr;
    const char* text = reinterpret_cast<const char*>(bytes.data());
    auto length = static_cast<std::uint32_t>(bytes.size());
    if (binary) plist_from_bin(text, length, &root);
    else plist_from_xml(text, length, &root);
    if (root == nullptr) throwNotAPropertyList();
    return PlistHandle(root);
}

// libplist keeps an integer as 64 bits and a flag telling unsigned values
// past the signed range from negative ones; only its writer shows the flag.
bool isUnsignedBeyondInt64(plist_t node) {
    std::uint64_t value = 0;
    plist_get_uint_val(node, &value);
    if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return false;
    char* text = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(node, &text, &length);
    if (text == nullptr) return false;
    bool negative = std::string_view(text, length).find("<integer>-") != std::string_view::npos;
    plist_to_xml_free(text);
    return !negative;
}

CodingValue scalarValue(plist_t node) {
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            std::uint8_t value = 0;
            plist_get_bool_val(node, &value);
            return CodingValue::boolean(value != 0);
        }
        case PLIST_UINT: {
            std::uint64_t value = 0;
            plist_get_uint_val(node, &value);  // two's complement for negatives
            // Kept as the nearest real: an integer type refuses it, naming the key.
            if (isUnsignedBeyondInt64(node)) return CodingValue::real(static_cast<double>(value));
            return CodingValue::integer(static_cast<std::int64_t>(value));
        }
        case PLIST_UID: {
            std::uint64_t value = 0;
            plist_get_uid_val(node, &value);
            return CodingValue::integer(static_cast<std::int64_t>(value));
        }
        case PLIST_REAL: {
            double value = 0;
            plist_get_real_val(node, &value);
            return CodingValue::real(value);
        }
        case PLIST_DATE: {
            std::int32_t seconds = 0;
            std::int32_t microseconds = 0;
            plist_get_date_val(node, &seconds, &microseconds);
            return CodingValue::real(seconds + microseconds / microsecondsPerSecond);
        }
        case PLIST_STRING: {
            std::uint64_t length = 0;
            const char* text = plist_get_string_ptr(node, &length);
            std::string value(text == nullptr ? "" : text, text == nullptr ? 0 : length);
            if (value == nullMarker) return CodingValue();
            return CodingValue::string(std::move(value));
        }
        case PLIST_DATA: {
            std::uint64_t length = 0;
            const char* bytes = plist_get_data_ptr(node, &length);
            const auto* begin = reinterpret_cast<const std::uint8_t*>(bytes);
            return CodingValue::data(bytes == nullptr ? Data() : Data(begin, begin + length));
        }
        default:
            throwNotAPropertyList();
    }
}

// Walks libplist's tree with an explicit stack, feeding the builder.
class PlistWalk {
public:
    PlistWalk() = default;
    PlistWalk(const PlistWalk&) = delete;
    PlistWalk& operator=(const PlistWalk&) = delete;
    ~PlistWalk() {
        for (Open& open : open_) std::free(open.iterator);  // left open by an error
    }

    CodingValue run(plist_t root) {
        visit(root);
        while (!open_.empty()) step();
        if (!builder_.isComplete()) throwNotAPropertyList();
        return builder_.takeRoot();
    }

private:
    struct Open {
        plist_t node;
        bool dictionary;
        void* iterator;
    };

    void visit(plist_t node) {
        plist_type type = plist_get_node_type(node);
        if (type == PLIST_ARRAY || type == PLIST_DICT) {
            bool dictionary = type == PLIST_DICT;
            check(dictionary ? builder_.beginDictionary() : builder_.beginArray());
            void* iterator = nullptr;
            if (dictionary) plist_dict_new_iter(node, &iterator);
            else plist_array_new_iter(node, &iterator);
            open_.push_back({node, dictionary, iterator});
            return;
        }
        check(builder_.value(scalarValue(node)));
    }

    void step() {
        Open& top = open_.back();
        plist_t item = nullptr;
        if (top.dictionary) {
            char* key = nullptr;
            plist_dict_next_item(top.node, top.iterator, &key, &item);
            if (key != nullptr) {
                std::string name(key);
                std::free(key);
                check(builder_.key(std::move(name)));
            }
        } else {
            plist_array_next_item(top.node, top.iterator, &item);
        }
        if (item != nullptr) {
            visit(item);
            return;
        }
        std::free(top.iterator);
        open_.pop_back();
        check(builder_.end());
    }

    void check(bool accepted) {
        if (!accepted) throwNotAPropertyList();
    }

    detail::CodingTreeBuilder builder_;
    std::vector<Open> open_;
};

// ---------------------------------------------------------------- encoding

// Builds libplist's tree from ours, tracking the coding path for errors.
class PlistBuilder {
public:
    PlistHandle build(const CodingValue& root) { return PlistHandle(make(root)); }

private:
    plist_t make(const CodingValue& value) {
        switch (value.kind()) {
            case CodingValue::Kind::null: return plist_new_string(std::string(nullMarker).c_str());
            case CodingValue::Kind::boolean: return plist_new_bool(value.asBoolean() ? 1 : 0);
            case CodingValue::Kind::integer:
                return plist_new_uint(static_cast<std::uint64_t>(value.asInteger()));
            case CodingValue::Kind::real: return plist_new_real(value.asReal());
            case CodingValue::Kind::string: return plist_new_string(text(value.asString()));
            case CodingValue::Kind::data: return makeData(value.asData());
            case CodingValue::Kind::array: return makeArray(value.asArray());
            case CodingValue::Kind::dictionary: return makeDictionary(value.asDictionary());
        }
        return nullptr;
    }

    plist_t makeArray(const CodingValue::Array& items) {
        PlistHandle array(plist_new_array());
        for (std::size_t i = 0; i < items.size(); ++i) {
            path_.push_back(CodingKey::index(static_cast<std::int64_t>(i)));
            plist_array_append_item(array.get(), make(items[i]));
            path_.pop_back();
        }
        return array.release();
    }

    plist_t makeDictionary(const CodingValue::Dictionary& entries) {
        PlistHandle dictionary(plist_new_dict());
        for (const auto& [key, item] : entries) {
            path_.push_back(CodingKey::named(key));
            const char* name = text(key);
            plist_dict_set_item(dictionary.get(), name, make(item));
            path_.pop_back();
        }
        return dictionary.release();
    }

    static plist_t makeData(const Data& bytes) {
        return plist_new_data(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }

    // libplist takes C strings: a NUL inside would silently cut the text.
    const char* text(const std::string& value) const {
        if (value.find('\0') != std::string::npos) {
            throw EncodingError(path_, "A string holds a NUL character, which a property list cannot keep.");
        }
        return value.c_str();
    }

    CodingPath path_;
};

}  // namespace

CodingValue PropertyListDecoder::parse(const Data& bytes) const {
    PlistHandle root = parsePlist(bytes);
    return PlistWalk().run(root.get());
}

Data PropertyListEncoder::serialize(const CodingValue& root) const {
    PlistHandle tree = PlistBuilder().build(root);
    char* bytes = nullptr;  // libplist writes only into an empty pointer
    std::uint32_t length = 0;
    if (outputFormat == OutputFormat::binary) plist_to_bin(tree.get(), &bytes, &length);
    else plist_to_xml(tree.get(), &bytes, &length);
    if (bytes == nullptr) throw EncodingError({}, "The value could not be written as a property list.");
    Data result(bytes, bytes + length);
    if (outputFormat == OutputFormat::binary) plist_to_bin_free(bytes);
    else plist_to_xml_free(bytes);
    return result;
}

}  // namespace vantel
