#include "CodingTreeBuilder.hpp"

#include <utility>

namespace vantel::detail {

namespace {
// Below this many entries a linear search for a repeated key is cheaper
// than keeping an index.
constexpr std::size_t indexedDictionarySize = 16;
}  // namespace

bool CodingTreeBuilder::beginArray() { return begin(CodingValue::array()); }

bool CodingTreeBuilder::beginDictionary() { return begin(CodingValue::dictionary()); }

bool CodingTreeBuilder::begin(CodingValue container) {
    if (open_.size() >= maximumNestingDepth) {
        return fail("Containers nest deeper than " + std::to_string(maximumNestingDepth) +
                    " levels.");
    }
    if (root_) return fail("More than one top-level value.");
    if (!open_.empty() && open_.back().container.kind() == CodingValue::Kind::dictionary &&
        !open_.back().pendingKey) {
        return fail("A dictionary value without a key.");
    }
    open_.push_back({std::move(container), std::nullopt, nullptr});
    return true;
}

bool CodingTreeBuilder::key(std::string name) {
    if (open_.empty() || open_.back().container.kind() != CodingValue::Kind::dictionary ||
        open_.back().pendingKey) {
        return fail("A key outside a dictionary.");
    }
    open_.back().pendingKey = std::move(name);
    return true;
}

bool CodingTreeBuilder::value(CodingValue scalar) { return place(std::move(scalar)); }

bool CodingTreeBuilder::end() {
    if (open_.empty() || open_.back().pendingKey) return fail("A container ends unfinished.");
    CodingValue finished = std::move(open_.back().container);
    open_.pop_back();
    return place(std::move(finished));
}

CodingValue CodingTreeBuilder::takeRoot() {
    CodingValue root = std::move(*root_);
    root_.reset();
    return root;
}

bool CodingTreeBuilder::place(CodingValue value) {
    if (open_.empty()) {
        if (root_) return fail("More than one top-level value.");
        root_ = std::move(value);
        return true;
    }
    OpenContainer& parent = open_.back();
    if (parent.container.kind() == CodingValue::Kind::array) {
        parent.container.asArray().push_back(std::move(value));
        return true;
    }
    if (!parent.pendingKey) return fail("A dictionary value without a key.");
    std::string key = std::move(*parent.pendingKey);
    parent.pendingKey.reset();
    addEntry(parent, std::move(key), std::move(value));
    return true;
}

// A repeated key keeps its first position and takes the last value, as the
// usual readers of both formats do.
void CodingTreeBuilder::addEntry(OpenContainer& open, std::string key, CodingValue value) {
    CodingValue::Dictionary& entries = open.container.asDictionary();
    if (open.keyIndex) {
        auto [found, inserted] = open.keyIndex->try_emplace(key, entries.size());
        if (!inserted) {
            entries[found->second].second = std::move(value);
            return;
        }
    } else {
        for (auto& entry : entries) {
            if (entry.first == key) {
                entry.second = std::move(value);
                return;
            }
        }
        if (entries.size() + 1 >= indexedDictionarySize) {
            open.keyIndex = std::make_unique<std::unordered_map<std::string, std::size_t>>();
            for (std::size_t i = 0; i < entries.size(); ++i) open.keyIndex->emplace(entries[i].first, i);
            open.keyIndex->emplace(key, entries.size());
        }
    }
    entries.emplace_back(std::move(key), std::move(value));
}

bool CodingTreeBuilder::fail(std::string reason) {
    if (reason_.empty()) reason_ = std::move(reason);
    return false;
}

}  // namespace vantel::detail
