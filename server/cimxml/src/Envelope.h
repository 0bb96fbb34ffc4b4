// The parts of the message envelope that operation requests and export
// requests share: the CIM and MESSAGE elements and their version checks,
// and the mapping of parse faults to HTTP refusals.
#ifndef VEXA_CIMXML_ENVELOPE_H
#define VEXA_CIMXML_ENVELOPE_H

#include "XmlInput.h"
#include "XmlWriter.h"

#include <vexa/cimxml/Codec.h>

#include <pugixml.hpp>

#include <string>

namespace vexa::cimxml::detail {

// Throws the RequestError a client should see for a parse fault.
void throwParseFault(const ParseResult& result);

struct MessageHeader {
    std::string messageId;
    pugi::xml_node body; // the one element inside MESSAGE
};

// Checks CIM, MESSAGE and their versions (2.x, 2.x, 1.x; else 501).
MessageHeader readMessage(const pugi::xml_document& document);

[[noreturn]] void throwNotValid(const std::string& description);

// Opens CIM and MESSAGE (and the XML declaration wbemcli insists on).
XmlWriter openMessage(const std::string& messageId);
// Closes every element still open, MESSAGE and CIM included.
void endMessage(XmlWriter& out);
// The same, and takes the whole text.
std::string closeMessage(XmlWriter& out);

// Opens SIMPLERSP, the (I)METHODRESPONSE and, for intrinsic answers,
// IRETURNVALUE; closeMessage() closes them all.
XmlWriter openResult(const Request& request);
// A whole answer that is an ERROR.
std::string errorMessage(const std::string& messageId, const std::string& methodName,
                         bool extrinsic, Pegasus::CIMStatusCode status,
                         const std::string& description);
void writeError(XmlWriter& out, Pegasus::CIMStatusCode status, const std::string& description);

} // namespace vexa::cimxml::detail

#endif
