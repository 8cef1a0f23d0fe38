#pragma once

// Builds a CodingValue tree from a stream of parse events without recursion,
// so that the shape of untrusted input cannot exhaust the stack. Shared by the
// property-list and JSON front ends.

#include <Platform/Coding.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace vantel::detail {

// How deep containers may nest in a document we read. Deeper input is refused
// as corrupt: the tree is destroyed and decoded recursively, and real
// documents nest a handful of levels.
inline constexpr std::size_t maximumNestingDepth = 512;

class CodingTreeBuilder {
public:
    // Each returns false when the event does not fit (nesting too deep, a
    // value where a key is due, ...); reason() then says why.
    bool beginArray();
    bool beginDictionary();
    bool key(std::string name);
    bool value(CodingValue scalar);
    bool end();

    bool isComplete() const { return root_.has_value() && open_.empty(); }
    const std::string& reason() const { return reason_; }
    // The finished tree; call only when isComplete().
    CodingValue takeRoot();

private:
    struct OpenContainer {
        CodingValue container;
        std::optional<std::string> pendingKey;
        // Built once a dictionary grows, so that repeated keys are found fast.
        std::unique_ptr<std::unordered_map<std::string, std::size_t>> keyIndex;
    };
    bool begin(CodingValue container);
    bool place(CodingValue value);
    void addEntry(OpenContainer& open, std::string key, CodingValue value);
    bool fail(std::string reason);

    std::vector<OpenContainer> open_;
    std::optional<CodingValue> root_;
    std::string reason_;
};

}  // namespace vantel::detail
