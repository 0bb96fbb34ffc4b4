#include "XmlWriter.h"

#include "Utf8.h"

#include <stdexcept>

namespace vexa::cimxml::detail {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

bool allowedControl(unsigned char c) { return c == '\t' || c == '\n' || c == '\r'; }

} // namespace

void appendEscaped(std::string& out, std::string_view text) {
    for (size_t pos = 0; pos < text.size();) {
        const unsigned char c = static_cast<unsigned char>(text[pos]);
        if (c >= 0x80) {
            const size_t length = utf8SequenceLength(text, pos);
            if (length == 0) {
                out += replacementCharacter;
                pos++;
            } else {
                out.append(text.substr(pos, length));
                pos += length;
            }
            continue;
        }
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            if (c < 0x20 && !allowedControl(c))
                out += replacementCharacter;
            else
                out += static_cast<char>(c);
        }
        pos++;
    }
}

void XmlWriter::finishStartTag() {
    if (startTagPending_) {
        out_ += '>';
        startTagPending_ = false;
    }
}

XmlWriter& XmlWriter::open(const char* name) {
    finishStartTag();
    out_ += '<';
    out_ += name;
    open_.push_back(name);
    startTagPending_ = true;
    return *this;
}

XmlWriter& XmlWriter::attribute(const char* name, std::string_view value) {
    if (!startTagPending_)
        throw std::logic_error("XML attribute written outside a start tag");
    out_ += ' ';
    out_ += name;
    out_ += "=\"";
    appendEscaped(out_, value);
    out_ += '"';
    return *this;
}

XmlWriter& XmlWriter::text(std::string_view text) {
    finishStartTag();
    appendEscaped(out_, text);
    return *this;
}

XmlWriter& XmlWriter::close() {
    if (open_.empty())
        throw std::logic_error("XML end tag without an open element");
    finishStartTag();
    out_ += "</";
    out_ += open_.back();
    out_ += '>';
    open_.pop_back();
    return *this;
}

XmlWriter& XmlWriter::closeEmpty() {
    if (open_.empty() || !startTagPending_)
        throw std::logic_error("self-closing XML element that has content");
    out_ += "/>";
    startTagPending_ = false;
    open_.pop_back();
    return *this;
}

XmlWriter& XmlWriter::raw(std::string_view markup) {
    finishStartTag();
    out_.append(markup);
    return *this;
}

std::string XmlWriter::take() {
    if (!open_.empty())
        throw std::logic_error("XML document taken with open elements");
    return std::move(out_);
}

} // namespace vexa::cimxml::detail
