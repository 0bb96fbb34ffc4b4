// Reading CIM-XML documents: parsing under the decode limits, walking child
// elements, and the two kinds of fault a reader reports. Entry points map
// the faults to what the client should see (a 400 for an operation request,
// a CIM error for a parameter value, ...).
#ifndef VEXA_CIMXML_XMLINPUT_H
#define VEXA_CIMXML_XMLINPUT_H

#include <pugixml.hpp>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::cimxml::detail {

// The document is not CIM-XML: wrong or missing elements and attributes.
class StructureError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The structure is right but a value in it is not (a key that is not a
// number, an illegal name, ...).
class ValueError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class ParseFault { None, TooLarge, NotUtf8, NotWellFormed, TooDeep };

struct ParseResult {
    ParseFault fault = ParseFault::None;
    std::string description;
};

// Parses `text` into `document` after checking its size and encoding, and
// then its element nesting, so that readers may recurse along the tree.
ParseResult parseXml(pugi::xml_document& document, std::string_view text, size_t maxBytes,
                     size_t maxDepth);

// Element nesting depth of `node` counted from the document (the root
// element is 1).
size_t depthOf(pugi::xml_node node);

// The element children, skipping white space, comments and processing
// instructions.
std::vector<pugi::xml_node> childElements(pugi::xml_node node);
// The only child element named `name`; throws StructureError when it is
// missing or another element is there.
pugi::xml_node onlyChild(pugi::xml_node node, const char* name);
bool named(pugi::xml_node node, const char* name);

// Attribute lookup: exact name, or any case for attributes clients spell
// either way (EmbeddedObject / EMBEDDEDOBJECT).
pugi::xml_attribute attribute(pugi::xml_node node, const char* name);
pugi::xml_attribute attributeNoCase(pugi::xml_node node, const char* name);
// The value of a required attribute; throws StructureError when missing.
std::string requiredAttribute(pugi::xml_node node, const char* name);

// The character content of a text-only element (VALUE, KEYVALUE, HOST);
// throws StructureError when it contains elements.
std::string textOf(pugi::xml_node node);

// The element written out again, for embedded instances that arrive as
// elements rather than text.
std::string markupOf(pugi::xml_node node);

// "<IPARAMVALUE> at byte 123" for messages.
std::string where(pugi::xml_node node);

} // namespace vexa::cimxml::detail

#endif
