#include <OverlayGenerator/GridType.hpp>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace vantel {

namespace {

constexpr std::array<std::pair<const char*, GridType::Case>, 3> caseNames{{
    {"none", GridType::Case::none},
    {"pixels", GridType::Case::pixels},
    {"divisor", GridType::Case::divisor},
}};

const char* caseName(GridType::Case tag) {
    for (const auto& [name, value] : caseNames) {
        if (value == tag) return name;
    }
    return "none";
}

std::vector<std::pair<std::string, GridType::Case>> recognisedKeys(const KeyedDecodingContainer& container) {
    std::vector<std::pair<std::string, GridType::Case>> found;
    for (const std::string& key : container.allKeys()) {
        for (const auto& [name, value] : caseNames) {
            if (key == name) found.emplace_back(key, value);
        }
    }
    return found;
}

}  // namespace

GridType GridType::decode(const Decoder& decoder) {
    KeyedDecodingContainer container = decoder.container();
    auto keys = recognisedKeys(container);
    if (keys.size() != 1) {
        throw DecodingError::typeMismatch(
            "GridType", {container.codingPath(), "Invalid number of keys found, expected one."});
    }
    const auto& [key, tag] = keys.front();
    KeyedDecodingContainer associated = container.nestedContainer(key);
    if (tag == Case::none) return none();
    return {tag, associated.decode<std::int64_t>("_0")};
}

void GridType::encode(Encoder& encoder) const {
    KeyedEncodingContainer container = encoder.container();
    KeyedEncodingContainer associated = container.nestedContainer(caseName(tag));
    if (tag != Case::none) associated.encode(payload, "_0");
}

}  // namespace vantel
