#pragma once

// Universally unique identifiers: random (version 4) and name-based
// (version 5) creation and the standard 36-character text, e.g. "E621E1F8-C36C-495A-93FC-0C247A3E6E5F".

#include <Platform/Coding.hpp>

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vantel {

class UUID {
public:
    using Bytes = std::array<std::uint8_t, 16>;

    UUID() = default;  // all zero
    explicit UUID(const Bytes& bytes) : bytes_(bytes) {}

    // A fresh version-4 identifier from the system's secure random source.
    static UUID random();
    // The version-5 identifier of `name` within `space` (RFC 4122, SHA-1):
    // the same for the same name, so reproducible outputs can carry one.
    static UUID nameBased(const UUID& space, std::string_view name);
    // Hexadecimal digits of either case in the 8-4-4-4-12 form; nothing otherwise.
    static std::optional<UUID> fromString(std::string_view text);

    std::string uuidString() const;  // upper case
    const Bytes& bytes() const { return bytes_; }

    // Coded as its text; a text that is not a UUID is corrupt data.
    static UUID decode(const Decoder& decoder);
    void encode(Encoder& encoder) const;

    friend bool operator==(const UUID&, const UUID&) = default;
    friend auto operator<=>(const UUID&, const UUID&) = default;

private:
    Bytes bytes_{};
};

}  // namespace vantel

template <>
struct std::hash<vantel::UUID> {
    std::size_t operator()(const vantel::UUID& uuid) const noexcept;
};
