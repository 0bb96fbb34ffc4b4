// A small XML writer with the habits WBEM clients need: every element gets
// an explicit end tag unless the caller asks for the self-closing form
// (wbemcli's parser rejects <VALUE/>, <PROPERTY .../> and the like), text is
// escaped with the five named entities only (wbemcli shows numeric
// references verbatim), and bytes that would make the document
// ill-formed (control characters, broken UTF-8) become U+FFFD.
#ifndef VEXA_CIMXML_XMLWRITER_H
#define VEXA_CIMXML_XMLWRITER_H

#include <string>
#include <string_view>
#include <vector>

namespace vexa::cimxml::detail {

// Quotes are escaped in text as well: the same routine serves attributes,
// and embedded instances read the same either way.
void appendEscaped(std::string& out, std::string_view text);

class XmlWriter {
public:
    XmlWriter& open(const char* name);
    XmlWriter& attribute(const char* name, std::string_view value);
    XmlWriter& text(std::string_view text);
    // Ends the innermost open element with an end tag.
    XmlWriter& close();
    // An element without content, as <NAME .../>; only for the elements
    // both clients accept that way (NAMESPACE, CLASSNAME).
    XmlWriter& closeEmpty();
    XmlWriter& raw(std::string_view markup);

    size_t openElements() const { return open_.size(); }
    const std::string& str() const { return out_; }
    std::string take();

private:
    void finishStartTag();

    std::string out_;
    std::vector<const char*> open_;
    bool startTagPending_ = false;
};

} // namespace vexa::cimxml::detail

#endif
