#include <Platform/XML.hpp>

#include <Platform/Fatal.hpp>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>

namespace vantel {

namespace {

xmlNodePtr asNode(void* node) { return static_cast<xmlNodePtr>(node); }
xmlDocPtr asDoc(void* doc) { return static_cast<xmlDocPtr>(doc); }

const xmlChar* xmlText(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

std::string fromXML(const xmlChar* text) {
    return text ? std::string(reinterpret_cast<const char*>(text)) : std::string();
}

std::string takeXML(xmlChar* text) {
    std::string result = fromXML(text);
    xmlFree(text);
    return result;
}

xmlNodePtr checkedNode(xmlNodePtr node) {
    if (!node) fatalError("libxml2 could not allocate a node");
    return node;
}

// The next node of a depth-first walk that stays under `top`; a loop, not
// recursion, so that a deep tree cannot exhaust the stack.
xmlNodePtr nextUnder(xmlNodePtr node, xmlNodePtr top) {
    if (node->type == XML_ELEMENT_NODE && node->children) return node->children;
    while (node != top && !node->next) node = node->parent;
    return node == top ? nullptr : node->next;
}

bool isBlankText(xmlNodePtr node) { return node->type == XML_TEXT_NODE && xmlIsBlankNode(node); }

bool hasBlankText(xmlNodePtr top) {
    for (xmlNodePtr node = top; node; node = nextUnder(node, top)) {
        if (isBlankText(node)) return true;
    }
    return false;
}

void removeBlankText(xmlNodePtr top) {
    for (xmlNodePtr node = top; node;) {
        if (node != top && isBlankText(node)) {
            xmlNodePtr blank = node;
            node = nextUnder(node, top);
            xmlUnlinkNode(blank);
            xmlFreeNode(blank);
        } else {
            node = nextUnder(node, top);
        }
    }
}

std::string dumpNode(xmlDocPtr doc, xmlNodePtr node, bool pretty) {
    std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)> buffer(xmlBufferCreate(), xmlBufferFree);
    if (!buffer) fatalError("libxml2 could not allocate a buffer");
    xmlNodeDump(buffer.get(), doc, node, 0, pretty ? 1 : 0);
    return fromXML(xmlBufferContent(buffer.get()));
}

}  // namespace

XMLElement::XMLElement(std::string_view name)
    : node_(checkedNode(xmlNewNode(nullptr, xmlText(std::string(name))))), owned_(true) {}

XMLElement::XMLElement(XMLElement&& other) noexcept
    : node_(std::exchange(other.node_, nullptr)), owned_(std::exchange(other.owned_, false)) {}

XMLElement& XMLElement::operator=(XMLElement&& other) noexcept {
    if (this != &other) {
        if (owned_ && node_) xmlFreeNode(asNode(node_));
        node_ = std::exchange(other.node_, nullptr);
        owned_ = std::exchange(other.owned_, false);
    }
    return *this;
}

XMLElement::~XMLElement() {
    if (owned_ && node_) xmlFreeNode(asNode(node_));
}

void* XMLElement::release() {
    owned_ = false;
    return std::exchange(node_, nullptr);
}

std::string XMLElement::name() const { return fromXML(asNode(node_)->name); }

void XMLElement::addAttribute(std::string_view name, std::string_view value) {
    std::string key(name);
    if (xmlHasProp(asNode(node_), xmlText(key))) return;
    xmlNewProp(asNode(node_), xmlText(key), xmlText(std::string(value)));
}

std::optional<std::string> XMLElement::attribute(std::string_view name) const {
    xmlChar* value = xmlGetProp(asNode(node_), xmlText(std::string(name)));
    if (!value) return std::nullopt;
    return takeXML(value);
}

std::vector<std::pair<std::string, std::string>> XMLElement::attributes() const {
    std::vector<std::pair<std::string, std::string>> result;
    for (xmlAttrPtr attr = asNode(node_)->properties; attr; attr = attr->next) {
        result.emplace_back(fromXML(attr->name), takeXML(xmlNodeGetContent(reinterpret_cast<xmlNodePtr>(attr))));
    }
    return result;
}

void XMLElement::addChild(XMLElement child) {
    xmlNodePtr node = asNode(child.release());
    if (!xmlAddChild(asNode(node_), node)) fatalError("libxml2 could not add a child");
}

void XMLElement::addText(std::string_view text) {
    xmlNodePtr node = checkedNode(xmlNewText(xmlText(std::string(text))));
    xmlNodePtr added = xmlAddChild(asNode(node_), node);
    // libxml2 merges adjacent text and frees the new node in that case.
    if (!added) xmlFreeNode(node);
}

std::vector<XMLElement> XMLElement::children() const {
    std::vector<XMLElement> result;
    for (xmlNodePtr child = asNode(node_)->children; child; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) result.push_back(XMLElement(child, View{}));
    }
    return result;
}

std::size_t XMLElement::childCount() const { return xmlChildElementCount(asNode(node_)); }

bool XMLElement::hasOnlyElementChildren() const {
    for (xmlNodePtr child = asNode(node_)->children; child; child = child->next) {
        if (child->type != XML_ELEMENT_NODE) return false;
    }
    return true;
}

std::string XMLElement::text() const { return takeXML(xmlNodeGetContent(asNode(node_))); }

XMLElement XMLElement::detach() {
    xmlUnlinkNode(asNode(node_));
    XMLElement result(node_, View{});
    result.owned_ = true;
    owned_ = false;
    node_ = nullptr;
    return result;
}

void XMLElement::replaceChildren(std::vector<XMLElement> children) {
    xmlNodePtr node = asNode(node_);
    while (xmlNodePtr child = node->children) {
        xmlUnlinkNode(child);
        xmlFreeNode(child);
    }
    for (auto& child : children) addChild(std::move(child));
}

std::string XMLElement::xmlString(bool pretty) const {
    if (!pretty || !hasBlankText(asNode(node_))) return dumpNode(nullptr, asNode(node_), pretty);
    xmlNodePtr copy = checkedNode(xmlCopyNode(asNode(node_), 1));
    removeBlankText(copy);
    std::string text = dumpNode(nullptr, copy, true);
    xmlFreeNode(copy);
    return text;
}

XMLDocument::XMLDocument(XMLElement root) : doc_(xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"))) {
    if (!doc_) fatalError("libxml2 could not allocate a document");
    xmlNodePtr node = asNode(root.release());
    xmlDocSetRootElement(asDoc(doc_), node);
}

XMLDocument::XMLDocument(XMLDocument&& other) noexcept : doc_(std::exchange(other.doc_, nullptr)) {}

XMLDocument& XMLDocument::operator=(XMLDocument&& other) noexcept {
    if (this != &other) {
        if (doc_) xmlFreeDoc(asDoc(doc_));
        doc_ = std::exchange(other.doc_, nullptr);
    }
    return *this;
}

XMLDocument::~XMLDocument() {
    if (doc_) xmlFreeDoc(asDoc(doc_));
}

XMLElement XMLDocument::root() const { return XMLElement(xmlDocGetRootElement(asDoc(doc_)), XMLElement::View{}); }

std::string XMLDocument::xmlString(bool pretty) const {
    xmlDocPtr doc = asDoc(doc_);
    std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> copy(nullptr, xmlFreeDoc);
    // Only a tree with blank text needs a copy to strip it from: a large
    // drawing has none, and copying it would double its memory.
    xmlNodePtr root = xmlDocGetRootElement(doc);
    if (pretty && root && hasBlankText(root)) {
        copy.reset(xmlCopyDoc(doc, 1));
        if (!copy) fatalError("libxml2 could not copy a document");
        removeBlankText(xmlDocGetRootElement(copy.get()));
        doc = copy.get();
    }
    xmlChar* text = nullptr;
    int length = 0;
    xmlDocDumpFormatMemoryEnc(doc, &text, &length, "UTF-8", pretty ? 1 : 0);
    if (!text) fatalError("libxml2 could not serialise a document");
    return takeXML(text);
}

}  // namespace vantel
