#include "PropertyListShape.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace vantel::detail {

// ---------------------------------------------------------------- XML

namespace {

std::string tooDeep(std::size_t limit) {
    return "Containers nest deeper than " + std::to_string(limit) + " levels.";
}

// Index just past the end marker, or the end of the text when it is missing.
std::size_t skipPast(std::string_view text, std::size_t from, std::string_view marker) {
    std::size_t found = text.find(marker, from);
    return found == std::string_view::npos ? text.size() : found + marker.size();
}

bool isContainerTag(std::string_view name) { return name == "array" || name == "dict"; }

bool isValueTag(std::string_view name) {
    for (std::string_view value : {"string", "integer", "real", "true", "false", "date", "data", "dict", "array"}) {
        if (name == value) return true;
    }
    return false;
}

std::string_view trimmedXMLSpace(std::string_view text) {
    constexpr std::string_view space = " \t\r\n";
    std::size_t first = text.find_first_not_of(space);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(space) - first + 1);
}

// libplist reads an integer's text with strtoull in any base and wraps what
// does not fit: "1e3" reads as 1, "010" as 8, 2^64 - 1 as -1. Only plain
// decimal text within a signed 64-bit integer reads back as written.
bool isPlainInt64Text(std::string_view text) {
    std::string_view digits = text;
    if (digits.starts_with('+') || digits.starts_with('-')) digits.remove_prefix(1);
    if (digits.empty() || (digits.size() > 1 && digits.front() == '0')) return false;
    if (text.starts_with('+')) text.remove_prefix(1);
    std::int64_t value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

std::string shortened(std::string_view text) {
    constexpr std::size_t shown = 32;
    return text.size() <= shown ? std::string(text) : std::string(text.substr(0, shown)) + "...";
}

// Key text as the message shows it: the predefined entities read, others kept.
std::string keyText(std::string_view text) {
    std::string key;
    for (std::size_t at = 0; at < text.size(); ++at) {
        bool replaced = false;
        for (auto [entity, character] : {std::pair{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'},
                                         {"&apos;", '\''}}) {
            if (text.substr(at).starts_with(entity)) {
                key += character;
                at += std::string_view(entity).size() - 1;
                replaced = true;
                break;
            }
        }
        if (!replaced) key += text[at];
    }
    return key;
}

// Where the scan is, as a coding path: a dictionary adds the key read last,
// an array the position of the value begun last.
class XMLKeyPath {
public:
    void valueBegins() {
        if (!frames_.empty() && !frames_.back().dictionary) ++frames_.back().index;
    }
    void open(bool dictionary) { frames_.push_back({dictionary, {}, -1}); }
    void close() {
        if (!frames_.empty()) frames_.pop_back();
    }
    void keyRead(std::string key) {
        if (!frames_.empty() && frames_.back().dictionary) frames_.back().key = std::move(key);
    }
    std::size_t depth() const { return frames_.size(); }
    CodingPath path() const {
        CodingPath path;
        for (const Frame& frame : frames_) {
            path.push_back(frame.dictionary ? CodingKey::named(frame.key) : CodingKey::index(frame.index));
        }
        return path;
    }

private:
    struct Frame {
        bool dictionary;
        std::string key;
        std::int64_t index;
    };
    std::vector<Frame> frames_;
};

class XMLShapeScan {
public:
    XMLShapeScan(const Data& bytes, const PropertyListLimits& limits)
        : text_(reinterpret_cast<const char*>(bytes.data()), bytes.size()), limits_(limits) {}

    std::optional<ShapeRefusal> run() {
        while ((at_ = text_.find('<', at_)) != std::string_view::npos) {
            if (skipCommentOrCDATA()) continue;
            std::size_t close = skipPast(text_, at_, ">");
            std::string_view tag = text_.substr(at_ + 1, close - at_ - 1);  // without '<'
            at_ = close;
            if (auto refused = take(tag)) return refused;
        }
        return std::nullopt;
    }

private:
    bool skipCommentOrCDATA() {
        std::string_view rest = text_.substr(at_);
        if (rest.starts_with("<!--")) at_ = skipPast(text_, at_, "-->");
        else if (rest.starts_with("<![CDATA[")) at_ = skipPast(text_, at_, "]]>");
        else return false;
        return true;
    }

    std::optional<ShapeRefusal> take(std::string_view tag) {
        bool closing = tag.starts_with('/');
        if (closing) tag.remove_prefix(1);
        std::string_view name = tag.substr(0, tag.find_first_of(" \t\r\n/>"));
        bool empty = tag.ends_with("/>");
        if (closing) {
            if (isContainerTag(name)) path_.close();
            return std::nullopt;
        }
        if (name == "key") path_.keyRead(empty ? std::string() : keyText(contentUpTo("</key>").first));
        if (!isValueTag(name)) return std::nullopt;
        path_.valueBegins();
        if (name == "integer") return checkInteger(empty ? std::pair{std::string_view(), true} : contentUpTo("</integer>"));
        if (!isContainerTag(name) || empty) return std::nullopt;
        path_.open(name == "dict");
        if (path_.depth() > limits_.maximumDepth) return ShapeRefusal{{}, tooDeep(limits_.maximumDepth)};
        return std::nullopt;
    }

    // The text up to the next markup, and whether that markup is `endTag`
    // (a comment or CDATA section inside the text is not). The scan reads
    // on from the markup, so nothing is hidden from the depth check.
    std::pair<std::string_view, bool> contentUpTo(std::string_view endTag) const {
        std::size_t end = std::min(text_.find('<', at_), text_.size());
        return {text_.substr(at_, end - at_), text_.substr(end).starts_with(endTag)};
    }

    std::optional<ShapeRefusal> checkInteger(std::pair<std::string_view, bool> content) {
        std::string_view number = trimmedXMLSpace(content.first);
        if (content.second && isPlainInt64Text(number)) return std::nullopt;
        return ShapeRefusal{path_.path(), "Number " + shortened(number) + " is not a whole number that fits in Int."};
    }

    std::string_view text_;
    const PropertyListLimits& limits_;
    std::size_t at_ = 0;
    XMLKeyPath path_;
};

}  // namespace

std::optional<ShapeRefusal> checkXMLPropertyListShape(const Data& bytes, const PropertyListLimits& limits) {
    return XMLShapeScan(bytes, limits).run();
}

// ---------------------------------------------------------------- binary

namespace {

constexpr std::size_t headerSize = 8;   // "bplist00"
constexpr std::size_t trailerSize = 32;

std::uint64_t readBigEndian(const std::uint8_t* at, std::size_t width) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) value = (value << 8) | at[i];
    return value;
}

struct ObjectState {
    std::uint32_t nodes = 0;  // fits: the limit is checked long before
    std::uint16_t depth = 0;
    std::uint8_t visit = 0;  // 0 new, 1 on the current path, 2 measured
    bool checkedAsKey = false;
};

// An object's length field and where its contents start.
struct Extent {
    std::uint64_t at = 0;
    std::uint64_t count = 0;
};

// Where an object's references lie: count of them from references on.
struct References {
    bool container = false;
    std::uint64_t at = 0;
    std::uint64_t count = 0;
    bool dictionary = false;  // the first half are keys
};

// Walks the object graph of a binary property list without recursion,
// measuring each object once: its nesting depth and the number of values it
// becomes when every reference is expanded.
class BinaryShapeScan {
public:
    BinaryShapeScan(const Data& bytes, const PropertyListLimits& limits)
        : bytes_(bytes), limits_(limits) {}

    std::optional<std::string> run() {
        if (!readTrailer()) return "The binary property list's trailer is damaged.";
        states_.assign(objectCount_, {});
        return measure(topObject_);
    }

private:
    struct Frame {
        std::uint64_t object;
        References references;
        std::uint64_t next = 0;
        std::uint64_t nodes = 1;
        std::uint16_t depth = 0;
    };

    bool readTrailer() {
        if (bytes_.size() < headerSize + trailerSize) return false;
        const std::uint8_t* trailer = bytes_.data() + bytes_.size() - trailerSize;
        offsetSize_ = trailer[6];
        referenceSize_ = trailer[7];
        objectCount_ = readBigEndian(trailer + 8, 8);
        topObject_ = readBigEndian(trailer + 16, 8);
        tableStart_ = readBigEndian(trailer + 24, 8);
        std::uint64_t tableRoom = bytes_.size() - trailerSize;
        if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8) return false;
        if (tableStart_ < headerSize || tableStart_ > tableRoom) return false;
        if (objectCount_ == 0 || objectCount_ > (tableRoom - tableStart_) / offsetSize_) return false;
        return topObject_ < objectCount_;
    }

    std::optional<std::uint64_t> objectOffset(std::uint64_t object) const {
        std::uint64_t offset = readBigEndian(bytes_.data() + tableStart_ + object * offsetSize_, offsetSize_);
        if (offset < headerSize || offset >= tableStart_) return std::nullopt;
        return offset;
    }

    // The count that follows an object's marker, inline or as an integer
    // object; nothing when it runs past the objects.
    std::optional<Extent> extentOf(std::uint64_t offset) const {
        std::uint64_t at = offset + 1;
        std::uint64_t count = bytes_[offset] & 0x0F;
        if (count == 0x0F) {
            if (at >= tableStart_ || (bytes_[at] >> 4) != 0x1) return std::nullopt;
            std::size_t width = std::size_t{1} << (bytes_[at] & 0x0F);
            if (width > 8 || at + 1 + width > tableStart_) return std::nullopt;
            count = readBigEndian(bytes_.data() + at + 1, width);
            at += 1 + width;
        }
        return Extent{at, count};
    }

    // Nothing when the object cannot be read.
    std::optional<References> referencesOf(std::uint64_t object) const {
        auto offset = objectOffset(object);
        if (!offset) return std::nullopt;
        std::uint64_t perEntry = 0;
        switch (bytes_[*offset] >> 4) {
            case 0xA: case 0xB: case 0xC: perEntry = 1; break;  // array, ordered set, set
            case 0xD: perEntry = 2; break;                      // dictionary: keys, then values
            default: return References{};
        }
        auto extent = extentOf(*offset);
        if (!extent) return std::nullopt;
        std::uint64_t room = (tableStart_ - extent->at) / referenceSize_;
        if (extent->count > room / perEntry) return std::nullopt;
        return References{true, extent->at, extent->count * perEntry, perEntry == 2};
    }

    // libplist asserts that a key holds no NUL character: such a key would
    // abort the process, so it is refused here. Other objects are left to
    // libplist, which refuses keys that are not strings.
    bool isAcceptableKey(std::uint64_t object) {
        if (states_[object].checkedAsKey) return true;
        auto offset = objectOffset(object);
        if (!offset) return false;
        std::uint8_t kind = bytes_[*offset] >> 4;
        if (kind != 0x5 && kind != 0x6) return true;
        auto extent = extentOf(*offset);
        std::uint64_t unit = kind == 0x5 ? 1 : 2;  // ASCII or UTF-16
        if (!extent || extent->count > (tableStart_ - extent->at) / unit) return false;
        for (std::uint64_t i = 0; i < extent->count; ++i) {
            if (readBigEndian(bytes_.data() + extent->at + i * unit, unit) == 0) return false;
        }
        states_[object].checkedAsKey = true;
        return true;
    }

    std::uint64_t reference(const References& references, std::uint64_t index) const {
        return readBigEndian(bytes_.data() + references.at + index * referenceSize_, referenceSize_);
    }

    std::optional<std::string> measure(std::uint64_t root) {
        std::vector<Frame> path;
        if (auto refused = enter(root, path)) return refused;
        while (!path.empty()) {
            Frame& frame = path.back();
            if (frame.next == frame.references.count) {
                if (auto refused = finish(path)) return refused;
                continue;
            }
            std::uint64_t child = reference(frame.references, frame.next++);
            if (child >= objectCount_) return "The binary property list has a damaged object.";
            bool isKey = frame.references.dictionary && frame.next <= frame.references.count / 2;
            if (isKey && !isAcceptableKey(child)) return "The binary property list has a damaged key.";
            if (states_[child].visit == 1) return "The binary property list refers to itself.";
            if (states_[child].visit == 0) {
                if (auto refused = enter(child, path)) return refused;
                continue;
            }
            if (auto refused = add(frame, states_[child])) return refused;
        }
        return std::nullopt;
    }

    // libplist keeps the low 64 bits of a 128-bit integer and drops the rest.
    bool isWiderThan64Bits(std::uint64_t object) const {
        auto offset = objectOffset(object);
        if (!offset || bytes_[*offset] != 0x14 || *offset + 17 > tableStart_) return false;
        return readBigEndian(bytes_.data() + *offset + 1, 8) != 0;
    }

    std::optional<std::string> enter(std::uint64_t object, std::vector<Frame>& path) {
        if (isWiderThan64Bits(object)) return "The binary property list holds a whole number wider than 64 bits.";
        auto references = referencesOf(object);
        if (!references) return "The binary property list has a damaged object.";
        if (references->count == 0) {
            ObjectState& measured = states_[object];
            measured.nodes = 1;
            measured.depth = references->container ? 1 : 0;
            measured.visit = 2;
            return path.empty() ? std::nullopt : add(path.back(), measured);
        }
        if (path.size() >= limits_.maximumDepth) return tooDeep(limits_.maximumDepth);
        states_[object].visit = 1;
        path.push_back({object, *references});
        return std::nullopt;
    }

    std::optional<std::string> add(Frame& frame, const ObjectState& child) {
        frame.nodes += child.nodes;
        frame.depth = std::max(frame.depth, child.depth);
        if (frame.nodes > limits_.maximumNodes) {
            return "The binary property list expands to more than " +
                   std::to_string(limits_.maximumNodes) + " values.";
        }
        return std::nullopt;
    }

    std::optional<std::string> finish(std::vector<Frame>& path) {
        const Frame& frame = path.back();
        if (frame.depth + 1u > limits_.maximumDepth) return tooDeep(limits_.maximumDepth);
        ObjectState& measured = states_[frame.object];
        measured.nodes = static_cast<std::uint32_t>(frame.nodes);
        measured.depth = static_cast<std::uint16_t>(frame.depth + 1);
        measured.visit = 2;
        path.pop_back();
        return path.empty() ? std::nullopt : add(path.back(), measured);
    }

    const Data& bytes_;
    const PropertyListLimits& limits_;
    std::uint8_t offsetSize_ = 0;
    std::uint8_t referenceSize_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t topObject_ = 0;
    std::uint64_t tableStart_ = 0;
    std::vector<ObjectState> states_;
};

}  // namespace

std::optional<ShapeRefusal> checkBinaryPropertyListShape(const Data& bytes, const PropertyListLimits& limits) {
    if (auto refused = BinaryShapeScan(bytes, limits).run()) return ShapeRefusal{{}, *refused};
    return std::nullopt;
}

}  // namespace vantel::detail
