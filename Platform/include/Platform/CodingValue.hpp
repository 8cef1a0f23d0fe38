#pragma once

// The format-neutral tree that property lists and JSON are read into and
// written from, and the paths and errors of coding.

#include <Platform/Data.hpp>

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
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

}  // namespace vantel
