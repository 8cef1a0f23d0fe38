#include <Platform/UUID.hpp>

#include <Platform/Digest.hpp>
#include <Platform/SecureRandom.hpp>

#include <algorithm>
#include <cstring>

namespace vantel {

namespace {

constexpr std::size_t textLength = 36;

bool isHyphenPosition(std::size_t at) { return at == 8 || at == 13 || at == 18 || at == 23; }

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

UUID UUID::random() {
    Bytes bytes{};
    fillSecureRandom(bytes);
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // RFC 4122 variant
    return UUID(bytes);
}

UUID UUID::nameBased(const UUID& space, std::string_view name) {
    std::string hashed(space.bytes_.begin(), space.bytes_.end());
    hashed += name;
    SHA1Digest digest = sha1Digest(hashed);
    Bytes bytes{};
    std::copy_n(digest.begin(), bytes.size(), bytes.begin());
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x50);  // version 5
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // RFC 4122 variant
    return UUID(bytes);
}

std::optional<UUID> UUID::fromString(std::string_view text) {
    if (text.size() != textLength) return std::nullopt;
    Bytes bytes{};
    std::size_t nibble = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (isHyphenPosition(at)) {
            if (text[at] != '-') return std::nullopt;
            continue;
        }
        int value = hexValue(text[at]);
        if (value < 0) return std::nullopt;
        bytes[nibble / 2] = static_cast<std::uint8_t>(bytes[nibble / 2] | (nibble % 2 == 0 ? value << 4 : value));
        ++nibble;
    }
    return UUID(bytes);
}

std::string UUID::uuidString() const {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(textLength);
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += digits[bytes_[i] >> 4];
        text += digits[bytes_[i] & 0x0F];
    }
    return text;
}

UUID UUID::decode(const Decoder& decoder) {
    std::string text = decoder.singleValueContainer().decodeString();
    auto uuid = fromString(text);
    if (!uuid) {
        throw DecodingError::dataCorrupted(
            {decoder.codingPath(), "Attempted to decode UUID from invalid UUID string."});
    }
    return *uuid;
}

void UUID::encode(Encoder& encoder) const { encoder.singleValueContainer().encode(uuidString()); }

}  // namespace vantel

std::size_t std::hash<vantel::UUID>::operator()(const vantel::UUID& uuid) const noexcept {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    std::memcpy(&high, uuid.bytes().data(), sizeof high);
    std::memcpy(&low, uuid.bytes().data() + sizeof high, sizeof low);
    return std::hash<std::uint64_t>()(high ^ (low * 0x9E3779B97F4A7C15ULL));
}
