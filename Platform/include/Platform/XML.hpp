#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vantel {

// A small XML tree over libxml2, the only code that calls it.
//
// Ownership: an XMLElement is a move-only handle. A freshly made or
// detached element owns its node and frees it (with its subtree) when the
// handle goes away. Adding it to a parent hands the node to the parent; the
// handles that children() returns are views into a tree somebody else owns
// and stay valid only while that tree lives and the child stays in it.
class XMLElement {
public:
    explicit XMLElement(std::string_view name);
    XMLElement(XMLElement&& other) noexcept;
    XMLElement& operator=(XMLElement&& other) noexcept;
    XMLElement(const XMLElement&) = delete;
    XMLElement& operator=(const XMLElement&) = delete;
    ~XMLElement();

    std::string name() const;

    // The first value given for a name wins: adding a name the element
    // already carries changes nothing. Names may carry a prefix
    // ("inkscape:label"); declaring its namespace is the caller's business.
    void addAttribute(std::string_view name, std::string_view value);
    std::optional<std::string> attribute(std::string_view name) const;
    // Name-value pairs in the order they were added.
    std::vector<std::pair<std::string, std::string>> attributes() const;

    void addChild(XMLElement child);
    void addText(std::string_view text);
    // The element children, in order (text nodes are left out).
    std::vector<XMLElement> children() const;
    std::size_t childCount() const;  // element children only
    // False when a text node sits among the children.
    bool hasOnlyElementChildren() const;
    // The concatenated text of the element and its descendants.
    std::string text() const;

    // Takes this element out of its parent; the returned handle owns it.
    // Detaching an element without a parent just moves the handle.
    XMLElement detach();
    // Drops every child node (elements and text) and adopts the given ones.
    void replaceChildren(std::vector<XMLElement> children);

    // The element and its subtree as XML text, without a declaration.
    std::string xmlString(bool pretty = false) const;

private:
    friend class XMLDocument;
    struct View {};
    XMLElement(void* node, View) : node_(node), owned_(false) {}
    void* release();

    void* node_;  // xmlNode*
    bool owned_;
};

// A document with one root element.
class XMLDocument {
public:
    explicit XMLDocument(XMLElement root);
    XMLDocument(XMLDocument&& other) noexcept;
    XMLDocument& operator=(XMLDocument&& other) noexcept;
    XMLDocument(const XMLDocument&) = delete;
    XMLDocument& operator=(const XMLDocument&) = delete;
    ~XMLDocument();

    XMLElement root() const;  // a view

    // "<?xml version="1.0" encoding="UTF-8"?>" and the tree. Pretty printing
    // first removes whitespace-only text nodes so that the indentation is
    // the serialiser's own and does not pile up on re-reads.
    std::string xmlString(bool pretty = false) const;

private:
    void* doc_;  // xmlDoc*
};

}  // namespace vantel
