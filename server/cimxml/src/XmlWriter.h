// A small XML writer with the habits WBEM clients need: every element gets
// an explicit end tag unless the caller asks for the self-closing form
// (wbemcli's parser rejects <VALUE/>, <PROPERTY .../> and the like), text is
// escaped with the five named entities only (wbemcli shows numeric
// references verbatim), and bytes that would make the document
// ill-formed (control characters, broken UTF-8) become U+FFFD.
#ifndef VEXA_CIMXML_XMLWRITER_H
#define VEXA_CIMXML_XMLWRITER_H

#include <Pegasus/Common/String.h>

#include <string>
#include <string_view>
#include <vector>

namespace vexa::cimxml::detail {

// Quotes are escaped in text as well: the same routine serves attributes,
// and embedded instances read the same either way.
void appendEscaped(std::string& out, std::string_view text);
// The same for UTF-16 text, converted to UTF-8 in the same pass; a lone
// surrogate becomes U+FFFD.
void appendEscaped(std::string& out, const Pegasus::Char16* text, size_t length);

class XmlWriter {
public:
    XmlWriter& open(const char* name);
    XmlWriter& attribute(const char* name, std::string_view value);
    XmlWriter& attribute(const char* name, const char* value) {
        return attribute(name, std::string_view(value));
    }
    XmlWriter& attribute(const char* name, const std::string& value) {
        return attribute(name, std::string_view(value));
    }
    XmlWriter& attribute(const char* name, const Pegasus::String& value);
    XmlWriter& attribute(const char* name, const Pegasus::Char16* value, size_t length);
    XmlWriter& text(std::string_view text);
    XmlWriter& text(const char* text) { return this->text(std::string_view(text)); }
    XmlWriter& text(const std::string& text) { return this->text(std::string_view(text)); }
    XmlWriter& text(const Pegasus::String& text);
    // Ends the innermost open element with an end tag.
    XmlWriter& close();
    // An element without content, as <NAME .../>; only for the elements
    // both clients accept that way (NAMESPACE, CLASSNAME).
    XmlWriter& closeEmpty();
    XmlWriter& raw(std::string_view markup);

    size_t openElements() const { return open_.size(); }
    const std::string& str() const { return out_; }
    std::string take();

    // Hands the text written so far away (to be sent while the document
    // goes on) and keeps the buffer's memory for what follows.
    std::string_view pending() const { return out_; }
    void clearPending() { out_.clear(); }

    // A point to go back to when writing an element fails halfway.
    struct Mark {
        size_t bytes;
        size_t depth;
        bool startTagPending;
    };
    Mark mark() const { return {out_.size(), open_.size(), startTagPending_}; }
    void rollBack(const Mark& mark);

private:
    void finishStartTag();

    std::string out_;
    std::vector<const char*> open_;
    bool startTagPending_ = false;
};

} // namespace vexa::cimxml::detail

#endif
