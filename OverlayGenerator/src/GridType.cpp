#include <OverlayGenerator/GridType.hpp>

#include <array>
#include <optional>
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

std::optional<GridType::Case> caseNamed(const std::string& key) {
    for (const auto& [name, value] : caseNames) {
        if (key == name) return value;
    }
    return std::nullopt;
}

// Keys that name no case are not counted, so an extra key beside the case
// is ignored.
std::vector<std::string> recognisedKeys(const KeyedDecodingContainer& container) {
    std::vector<std::string> found;
    for (const std::string& key : container.allKeys()) {
        if (caseNamed(key)) found.push_back(key);
    }
    return found;
}

}  // namespace

GridType GridType::decode(const Decoder& decoder) {
    KeyedDecodingContainer container = decoder.container();
    const std::string key = onlyCaseKey(container, "GridType", recognisedKeys(container));
    const Case tag = *caseNamed(key);
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
