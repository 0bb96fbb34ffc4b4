#include "XmlInput.h"

#include "Utf8.h"

#include <cstring>
#include <strings.h>

namespace vexa::cimxml::detail {

namespace {

// Keep text exactly as sent: no white-space trimming, and a VALUE holding
// only spaces keeps them. Entities and character references are decoded;
// DOCTYPE declarations are skipped, so no entity can be defined.
constexpr unsigned parseOptions =
    (pugi::parse_default | pugi::parse_ws_pcdata_single) & ~pugi::parse_doctype;

class StringSink : public pugi::xml_writer {
public:
    void write(const void* data, size_t size) override {
        out.append(static_cast<const char*>(data), size);
    }
    std::string out;
};

bool isWhiteSpace(const char* text) {
    for (; *text; text++)
        if (*text != ' ' && *text != '\t' && *text != '\n' && *text != '\r')
            return false;
    return true;
}

// Deepest element nesting, walked without recursion: the document may be
// arbitrarily deep before this check has passed.
size_t maxElementDepth(const pugi::xml_document& document, size_t stopAbove) {
    size_t depth = 0, deepest = 0;
    pugi::xml_node node = document.first_child();
    while (node) {
        if (node.type() == pugi::node_element) {
            depth++;
            if (depth > deepest)
                deepest = depth;
            if (deepest > stopAbove)
                return deepest;
            if (node.first_child()) {
                node = node.first_child();
                continue;
            }
            depth--;
        }
        while (node && !node.next_sibling()) {
            node = node.parent();
            if (node.type() == pugi::node_element)
                depth--;
            if (node == document)
                return deepest;
        }
        if (node)
            node = node.next_sibling();
    }
    return deepest;
}

} // namespace

ParseResult parseXml(pugi::xml_document& document, std::string_view text, size_t maxBytes,
                     size_t maxDepth) {
    if (text.size() > maxBytes)
        return {ParseFault::TooLarge, "the message has " + std::to_string(text.size()) +
                                          " bytes, more than the limit of " +
                                          std::to_string(maxBytes)};
    const size_t bad = findInvalidUtf8(text);
    if (bad != std::string_view::npos)
        return {ParseFault::NotUtf8,
                "the message is not valid UTF-8 (at byte " + std::to_string(bad) + ")"};
    const pugi::xml_parse_result parsed =
        document.load_buffer(text.data(), text.size(), parseOptions, pugi::encoding_utf8);
    if (!parsed)
        return {ParseFault::NotWellFormed, std::string("the message is not well-formed XML: ") +
                                               parsed.description() + " at byte " +
                                               std::to_string(parsed.offset)};
    if (!document.document_element())
        return {ParseFault::NotWellFormed, "the message has no root element"};
    if (maxElementDepth(document, maxDepth) > maxDepth)
        return {ParseFault::TooDeep,
                "elements are nested more than " + std::to_string(maxDepth) + " levels deep"};
    return {};
}

size_t depthOf(pugi::xml_node node) {
    size_t depth = 0;
    for (; node && node.type() == pugi::node_element; node = node.parent())
        depth++;
    return depth;
}

std::vector<pugi::xml_node> childElements(pugi::xml_node node) {
    std::vector<pugi::xml_node> children;
    for (pugi::xml_node child : node.children()) {
        if (child.type() == pugi::node_element)
            children.push_back(child);
        else if ((child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) &&
                 !isWhiteSpace(child.value()))
            throw StructureError(where(node) + " holds text where only elements belong");
    }
    return children;
}

pugi::xml_node onlyChild(pugi::xml_node node, const char* name) {
    const std::vector<pugi::xml_node> children = childElements(node);
    if (children.size() != 1 || !named(children[0], name))
        throw StructureError(where(node) + " must hold exactly one " + name + " element");
    return children[0];
}

bool named(pugi::xml_node node, const char* name) { return std::strcmp(node.name(), name) == 0; }

pugi::xml_attribute attribute(pugi::xml_node node, const char* name) {
    return node.attribute(name);
}

pugi::xml_attribute attributeNoCase(pugi::xml_node node, const char* name) {
    for (pugi::xml_attribute a : node.attributes())
        if (strcasecmp(a.name(), name) == 0)
            return a;
    return {};
}

std::string requiredAttribute(pugi::xml_node node, const char* name) {
    const pugi::xml_attribute a = node.attribute(name);
    if (!a)
        throw StructureError(where(node) + " needs a " + name + " attribute");
    return a.value();
}

std::string textOf(pugi::xml_node node) {
    std::string text;
    for (pugi::xml_node child : node.children()) {
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
            text += child.value();
        else if (child.type() == pugi::node_element)
            throw StructureError(where(node) + " may hold only text, not <" +
                                 std::string(child.name()) + ">");
    }
    return text;
}

std::string markupOf(pugi::xml_node node) {
    StringSink sink;
    node.print(sink, "", pugi::format_raw, pugi::encoding_utf8);
    return std::move(sink.out);
}

std::string where(pugi::xml_node node) {
    std::string text = "<" + std::string(node.name()) + ">";
    const ptrdiff_t offset = node.offset_debug();
    if (offset >= 0)
        text += " at byte " + std::to_string(offset);
    return text;
}

} // namespace vexa::cimxml::detail
