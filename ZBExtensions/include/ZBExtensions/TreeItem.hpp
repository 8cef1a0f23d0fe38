#pragma once

// A node of a tree of values: an object, a parent, ordered children.
//
// Nodes live in std::shared_ptr (TreeItem<T>::Node) and have reference
// semantics. A parent owns its children; a child refers to its parent
// without owning it (a weak link). A tree therefore holds no ownership
// cycle and is freed when the last outside reference to its root goes, the
// way a caller expects a tree of values to go. The price: a node kept alone
// after its tree was dropped has no parent any more. Keep the root while
// using the links upward.

#include <Platform/Coding.hpp>
#include <Platform/Fatal.hpp>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace vantel {

template <class T>
class TreeItem : public std::enable_shared_from_this<TreeItem<T>> {
public:
    using Node = std::shared_ptr<TreeItem>;

    static Node make(T object) { return Node(new TreeItem(std::move(object))); }

    T object;
    std::vector<Node> children;

    Node parent() const { return parent_.lock(); }
    void setParent(const Node& parent) { parent_ = parent; }

    // 0 for a root, walking up the parents each time.
    int depth() const {
        int levels = 0;
        for (Node up = parent(); up; up = up->parent()) ++levels;
        return levels;
    }
    bool isLeaf() const { return children.empty(); }

    // Every descendant, depth first, each before its children; not this node.
    std::vector<Node> flatChildren() const {
        std::vector<Node> all;
        for (const Node& child : children) {
            all.push_back(child);
            std::vector<Node> below = child->flatChildren();
            all.insert(all.end(), below.begin(), below.end());
        }
        return all;
    }

    // The first descendant holding `value`; never this node.
    Node search(const T& value) const {
        for (const Node& node : flatChildren()) {
            if (node->object == value) return node;
        }
        return nullptr;
    }
    Node child(const T& value) const { return search(value); }

    // Inserts the nodes, in order, from position `at` (past the end: at the
    // end; absent: appended). Each becomes a child here and points its
    // parent link here, except a node whose object equals this node's: it
    // is inserted but keeps its parent link. A node is not taken out of
    // another parent's children. A negative position stops the process.
    void addChildren(const std::vector<Node>& nodes, std::optional<std::ptrdiff_t> at = std::nullopt) {
        for (const Node& node : nodes) {
            if (!(*node == *this)) node->setParent(this->shared_from_this());
            if (!at) {
                children.push_back(node);
                continue;
            }
            if (*at < 0) fatalError("TreeItem: insertion at a negative position");
            auto position = std::min(static_cast<std::size_t>(*at), children.size());
            children.insert(children.begin() + static_cast<std::ptrdiff_t>(position), node);
            ++*at;
        }
    }
    void addChildren(std::initializer_list<Node> nodes, std::optional<std::ptrdiff_t> at = std::nullopt) {
        addChildren(std::vector<Node>(nodes), at);
    }
    void addChildren(const std::vector<T>& values, std::optional<std::ptrdiff_t> at = std::nullopt) {
        std::vector<Node> nodes;
        for (const T& value : values) nodes.push_back(make(value));
        addChildren(nodes, at);
    }
    void addChildren(std::initializer_list<T> values, std::optional<std::ptrdiff_t> at = std::nullopt) {
        addChildren(std::vector<T>(values), at);
    }

    // For each node: removes the first child with an equal object (which may
    // be another node than the one given) and clears the given node's parent.
    void removeChildren(const std::vector<Node>& nodes) {
        for (const Node& node : nodes) {
            auto found = std::find_if(children.begin(), children.end(),
                                      [&node](const Node& child) { return *child == *node; });
            if (found == children.end()) continue;
            node->setParent(nullptr);
            children.erase(found);
        }
    }
    void removeChildren(std::initializer_list<Node> nodes) { removeChildren(std::vector<Node>(nodes)); }

    // Nodes compare by their objects only.
    friend bool operator==(const TreeItem& a, const TreeItem& b) { return a.object == b.object; }
    friend bool operator<(const TreeItem& a, const TreeItem& b)
        requires requires(const T& x) { x < x; }
    {
        return a.object < b.object;
    }

    // "<TreeItem leaf 1>": the object's text and the depth.
    std::string description() const {
        std::ostringstream text;
        text << "<TreeItem " << object << " " << depth() << ">";
        return text.str();
    }

    // {"object": ..., "children": [...]}; the parent link is not written.
    void encode(Encoder& encoder) const {
        KeyedEncodingContainer container = encoder.container();
        container.encode(object, "object");
        UnkeyedEncodingContainer items = container.nestedUnkeyedContainer("children");
        for (const Node& child : children) items.encode(*child);
    }

    // Decoded children have no parent; re-add them to link them up.
    static Node decodeTree(const Decoder& decoder) {
        KeyedDecodingContainer container = decoder.container();
        Node node = make(container.template decode<T>("object"));
        UnkeyedDecodingContainer items = container.nestedUnkeyedContainer("children");
        while (!items.isAtEnd()) node->children.push_back(items.template decode<Decoded>().node);
        return node;
    }

    // A decodable handle, for decoders that return values: decodeValue<Decoded>.
    struct Decoded {
        Node node;
        static Decoded decode(const Decoder& decoder) { return {decodeTree(decoder)}; }
    };

private:
    explicit TreeItem(T object) : object(std::move(object)) {}
    std::weak_ptr<TreeItem> parent_;
};

}  // namespace vantel
