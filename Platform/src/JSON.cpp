#include <Platform/JSON.hpp>

#include <Platform/NumberText.hpp>

#include "CodingTreeBuilder.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string_view>

namespace vantel {

namespace {

// ---------------------------------------------------------------- decoding

// Receives nlohmann's parse events; the tree is built by our own builder so
// that no intermediate JSON document is held in memory.
class TreeSax : public nlohmann::json_sax<nlohmann::json> {
public:
    bool null() override { return builder.value(CodingValue()); }
    bool boolean(bool value) override { return builder.value(CodingValue::boolean(value)); }
    bool number_integer(number_integer_t value) override {
        return builder.value(CodingValue::integer(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        if (value > static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max())) {
            return builder.value(CodingValue::real(static_cast<double>(value)));
        }
        return builder.value(CodingValue::integer(static_cast<std::int64_t>(value)));
    }
    bool number_float(number_float_t value, const string_t&) override {
        return builder.value(CodingValue::real(value));
    }
    bool string(string_t& value) override { return builder.value(CodingValue::string(std::move(value))); }
    bool binary(binary_t&) override { return false; }  // not produced by the text parser
    bool start_object(std::size_t) override { return builder.beginDictionary(); }
    bool key(string_t& name) override { return builder.key(std::move(name)); }
    bool end_object() override { return builder.end(); }
    bool start_array(std::size_t) override { return builder.beginArray(); }
    bool end_array() override { return builder.end(); }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override {
        // nlohmann prefixes its own exception id ("[json.exception.parse_error.101] ").
        std::string_view message = error.what();
        if (message.starts_with("[json.exception.")) message.remove_prefix(message.find("] ") + 2);
        parserMessage = message;
        return false;
    }

    detail::CodingTreeBuilder builder;
    std::string parserMessage;
};

[[noreturn]] void throwNotJSON(const std::string& detail) {
    throw DecodingError::dataCorrupted({{}, "The given data was not valid JSON. " + detail});
}

// ---------------------------------------------------------------- encoding

std::string base64(const Data& bytes) {
    static constexpr char alphabet[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t group = std::uint32_t{bytes[i]} << 16;
        if (i + 1 < bytes.size()) group |= std::uint32_t{bytes[i + 1]} << 8;
        if (i + 2 < bytes.size()) group |= bytes[i + 2];
        text += alphabet[(group >> 18) & 63];
        text += alphabet[(group >> 12) & 63];
        text += i + 1 < bytes.size() ? alphabet[(group >> 6) & 63] : '=';
        text += i + 2 < bytes.size() ? alphabet[group & 63] : '=';
    }
    return text;
}

// Length of the UTF-8 sequence starting at text[at], or 0 when it is invalid.
std::size_t utf8SequenceLength(std::string_view text, std::size_t at) {
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char lead = byte(at);
    if (lead < 0x80) return 1;
    std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
    if (length == 0 || lead > 0xF4 || at + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return 0;
    }
    unsigned char second = byte(at + 1);
    if (lead == 0xE0 && second < 0xA0) return 0;  // overlong
    if (lead == 0xED && second > 0x9F) return 0;  // surrogate
    if (lead == 0xF0 && second < 0x90) return 0;  // overlong
    if (lead == 0xF4 && second > 0x8F) return 0;  // beyond U+10FFFF
    return length;
}

class JSONWriter {
public:
    JSONWriter(bool pretty, bool sorted, bool spaceBeforeColon)
        : pretty_(pretty), sorted_(sorted), separator_(!pretty ? ":" : spaceBeforeColon ? " : " : ": ") {}

    std::string write(const CodingValue& root) {
        value(root);
        return std::move(out_);
    }

private:
    void value(const CodingValue& item) {
        switch (item.kind()) {
            case CodingValue::Kind::null: out_ += "null"; break;
            case CodingValue::Kind::boolean: out_ += item.asBoolean() ? "true" : "false"; break;
            case CodingValue::Kind::integer: out_ += std::to_string(item.asInteger()); break;
            case CodingValue::Kind::real: real(item.asReal()); break;
            case CodingValue::Kind::string: string(item.asString()); break;
            case CodingValue::Kind::data: string(base64(item.asData())); break;
            case CodingValue::Kind::array: array(item.asArray()); break;
            case CodingValue::Kind::dictionary: dictionary(item.asDictionary()); break;
        }
    }

    void real(double number) {
        if (!std::isfinite(number)) {
            throw EncodingError(path_, "Unable to encode " + numberText(number) +
                                           " directly in JSON.");
        }
        out_ += numberText(number);
    }

    void string(std::string_view text) {
        out_ += '"';
        for (std::size_t at = 0; at < text.size();) {
            std::size_t length = utf8SequenceLength(text, at);
            if (length == 0) throw EncodingError(path_, "A string is not valid UTF-8.");
            if (length == 1) escaped(text[at]);
            else out_.append(text.substr(at, length));
            at += length;
        }
        out_ += '"';
    }

    void escaped(char c) {
        switch (c) {
            case '"': out_ += "\\\""; return;
            case '\\': out_ += "\\\\"; return;
            case '\n': out_ += "\\n"; return;
            case '\r': out_ += "\\r"; return;
            case '\t': out_ += "\\t"; return;
            case '\b': out_ += "\\b"; return;
            case '\f': out_ += "\\f"; return;
            default: break;
        }
        if (static_cast<unsigned char>(c) < 0x20) {
            std::array<char, 8> code{};
            std::snprintf(code.data(), code.size(), "\\u%04x", static_cast<unsigned>(c));
            out_ += code.data();
            return;
        }
        out_ += c;
    }

    void array(const CodingValue::Array& items) {
        if (items.empty()) {
            out_ += "[]";
            return;
        }
        out_ += '[';
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (i > 0) out_ += ',';
            newline(1);
            path_.push_back(CodingKey::index(static_cast<std::int64_t>(i)));
            value(items[i]);
            path_.pop_back();
        }
        newline(0);
        out_ += ']';
    }

    void dictionary(const CodingValue::Dictionary& entries) {
        if (entries.empty()) {
            out_ += "{}";
            return;
        }
        std::vector<const CodingValue::Dictionary::value_type*> order;
        order.reserve(entries.size());
        for (const auto& entry : entries) order.push_back(&entry);
        if (sorted_) {
            std::stable_sort(order.begin(), order.end(),
                             [](const auto* a, const auto* b) { return a->first < b->first; });
        }
        out_ += '{';
        for (std::size_t i = 0; i < order.size(); ++i) {
            if (i > 0) out_ += ',';
            newline(1);
            path_.push_back(CodingKey::named(order[i]->first));
            string(order[i]->first);
            out_ += separator_;
            value(order[i]->second);
            path_.pop_back();
        }
        newline(0);
        out_ += '}';
    }

    // In pretty output, a line break indented for the current depth plus extra.
    void newline(std::size_t extra) {
        if (!pretty_) return;
        out_ += '\n';
        out_.append(2 * (depth() + extra), ' ');
    }
    std::size_t depth() const { return path_.size(); }

    bool pretty_;
    bool sorted_;
    const char* separator_;
    std::string out_;
    CodingPath path_;
};

}  // namespace

CodingValue JSONDecoder::parse(const Data& bytes) const {
    TreeSax sax;
    bool parsed = nlohmann::json::sax_parse(bytes.begin(), bytes.end(), &sax,
                                            nlohmann::json::input_format_t::json, true);
    if (!parsed) {
        throwNotJSON(sax.parserMessage.empty() ? sax.builder.reason() : sax.parserMessage);
    }
    if (!sax.builder.isComplete()) throwNotJSON("The document is incomplete.");
    return sax.builder.takeRoot();
}

Data JSONEncoder::serialize(const CodingValue& root) const {
    std::string text = JSONWriter(prettyPrinted, sortedKeys, spaceBeforeColon).write(root);
    return Data(text.begin(), text.end());
}

}  // namespace vantel
