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

void appendEscaped(std::string& out, const Pegasus::Char16* text, size_t length) {
    // Converted a block at a time through a buffer on the stack: one
    // append per block instead of one per character.
    char block[512];
    size_t used = 0;
    const auto put = [&](std::string_view bytes) {
        if (used + bytes.size() > sizeof block) {
            out.append(block, used);
            used = 0;
        }
        for (char c : bytes)
            block[used++] = c;
    };
    for (size_t pos = 0; pos < length; pos++) {
        const uint32_t unit = static_cast<Pegasus::Uint16>(text[pos]);
        if (unit >= 0x80) {
            uint32_t codePoint = unit;
            if (unit >= 0xD800 && unit <= 0xDFFF) {
                const uint32_t low =
                    pos + 1 < length ? static_cast<Pegasus::Uint16>(text[pos + 1]) : 0;
                if (unit > 0xDBFF || low < 0xDC00 || low > 0xDFFF) {
                    put(replacementCharacter);
                    continue;
                }
                codePoint = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
                pos++;
            }
            char bytes[4];
            put(std::string_view(bytes, encodeUtf8(codePoint, bytes)));
            continue;
        }
        switch (unit) {
        case '&':
            put("&amp;");
            break;
        case '<':
            put("&lt;");
            break;
        case '>':
            put("&gt;");
            break;
        case '"':
            put("&quot;");
            break;
        default:
            if (unit < 0x20 && !allowedControl(static_cast<unsigned char>(unit))) {
                put(replacementCharacter);
            } else {
                if (used == sizeof block) {
                    out.append(block, used);
                    used = 0;
                }
                block[used++] = static_cast<char>(unit);
            }
        }
    }
    out.append(block, used);
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

XmlWriter& XmlWriter::attribute(const char* name, const Pegasus::String& value) {
    return attribute(name, value.getChar16Data(), value.size());
}

XmlWriter& XmlWriter::attribute(const char* name, const Pegasus::Char16* value, size_t length) {
    if (!startTagPending_)
        throw std::logic_error("XML attribute written outside a start tag");
    out_ += ' ';
    out_ += name;
    out_ += "=\"";
    appendEscaped(out_, value, length);
    out_ += '"';
    return *this;
}

XmlWriter& XmlWriter::text(const Pegasus::String& text) {
    finishStartTag();
    appendEscaped(out_, text.getChar16Data(), text.size());
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

void XmlWriter::rollBack(const Mark& mark) {
    if (mark.bytes > out_.size() || mark.depth > open_.size())
        throw std::logic_error("XML writer rolled back past text already handed away");
    out_.resize(mark.bytes);
    open_.resize(mark.depth);
    startTagPending_ = mark.startTagPending;
}

std::string XmlWriter::take() {
    if (!open_.empty())
        throw std::logic_error("XML document taken with open elements");
    return std::move(out_);
}

} // namespace vexa::cimxml::detail
