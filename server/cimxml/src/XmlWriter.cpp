#include "XmlWriter.h"

#include "Utf8.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

namespace vexa::cimxml::detail {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

// ASCII that goes out as it is: everything printable but the characters
// with entities, and the three control characters XML allows.
struct PlainAscii {
    bool table[128] = {};
    constexpr PlainAscii() {
        for (int c = 0x20; c < 0x80; c++)
            table[c] = c != '&' && c != '<' && c != '>' && c != '"';
        table[int('\t')] = table[int('\n')] = table[int('\r')] = true;
    }
};
constexpr PlainAscii plainAscii;

inline bool plain(uint32_t unit) { return unit < 0x80 && plainAscii.table[unit]; }

// The markup, or the replacement, of an ASCII character that is not plain.
std::string_view escapeOf(uint32_t c) {
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    default:
        return replacementCharacter;
    }
}

// A worker writes one answer after another: the buffer of the last one is
// kept for the next, which then neither grows from nothing, copying as it
// goes, nor touches pages the allocator has given back to the system.
struct SpareBuffer {
    std::unique_ptr<char[]> data;
    size_t capacity = 0;
};
thread_local SpareBuffer spare;
constexpr size_t largestSpare = size_t(1) << 20;

} // namespace

XmlWriter::~XmlWriter() { keepSpare(); }

void XmlWriter::keepSpare() noexcept {
    if (data_ && capacity_ <= largestSpare && capacity_ > spare.capacity) {
        spare.data = std::move(data_);
        spare.capacity = capacity_;
    }
}

void XmlWriter::grow(size_t count) {
    const size_t capacity = std::max<size_t>({capacity_ * 2, size_ + count, 4096});
    std::unique_ptr<char[]> data;
    if (spare.capacity >= capacity && spare.data.get() != data_.get()) {
        data = std::move(spare.data);
        capacity_ = std::exchange(spare.capacity, 0);
    } else {
        data.reset(new char[capacity]);
        capacity_ = capacity;
    }
    if (size_)
        std::memcpy(data.get(), data_.get(), size_);
    data_ = std::move(data);
}

// Runs of plain ASCII are found first and copied whole; only the bytes
// between them are looked at one by one.
void XmlWriter::putEscaped(std::string_view text) {
    const size_t size = text.size();
    size_t pos = 0;
    while (pos < size) {
        size_t end = pos;
        while (end < size && plain(static_cast<unsigned char>(text[end])))
            end++;
        put(text.substr(pos, end - pos));
        if (end == size)
            break;
        pos = end;
        const unsigned char c = static_cast<unsigned char>(text[pos]);
        if (c >= 0x80) {
            const size_t length = utf8SequenceLength(text, pos);
            if (length == 0) {
                put(replacementCharacter);
                pos++;
            } else {
                put(text.substr(pos, length));
                pos += length;
            }
            continue;
        }
        put(escapeOf(c));
        pos++;
    }
}

// Room for the worst case is made first (six bytes of "&quot;" per unit),
// so the loop writes without checks: plain ASCII in a loop the compiler
// can vectorise, anything else through the escapes and UTF-8.
void XmlWriter::putEscaped(const Pegasus::Char16* text, size_t length) {
    char* const start = room(length * 6);
    char* to = start;
    const auto unitAt = [text](size_t i) -> uint32_t {
        return static_cast<Pegasus::Uint16>(text[i]);
    };
    size_t pos = 0;
    while (pos < length) {
        size_t end = pos;
        while (end < length && plain(unitAt(end)))
            end++;
        for (size_t i = pos; i < end; i++)
            *to++ = static_cast<char>(unitAt(i));
        if (end == length)
            break;
        pos = end;
        const uint32_t unit = unitAt(pos);
        std::string_view bytes;
        char encoded[4];
        if (unit < 0x80) {
            bytes = escapeOf(unit);
        } else if (unit >= 0xD800 && unit <= 0xDFFF) {
            const uint32_t low = pos + 1 < length ? unitAt(pos + 1) : 0;
            if (unit > 0xDBFF || low < 0xDC00 || low > 0xDFFF) {
                bytes = replacementCharacter;
            } else {
                const uint32_t codePoint = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
                bytes = std::string_view(encoded, encodeUtf8(codePoint, encoded));
                pos++;
            }
        } else {
            bytes = std::string_view(encoded, encodeUtf8(unit, encoded));
        }
        std::memcpy(to, bytes.data(), bytes.size());
        to += bytes.size();
        pos++;
    }
    size_ += static_cast<size_t>(to - start);
}

XmlWriter& XmlWriter::open(std::string_view name) {
    finishStartTag();
    put('<');
    put(name);
    open_.push_back(name);
    startTagPending_ = true;
    return *this;
}

XmlWriter& XmlWriter::attribute(std::string_view name, std::string_view value) {
    if (!startTagPending_)
        throw std::logic_error("XML attribute written outside a start tag");
    put(' ');
    put(name);
    put("=\"");
    putEscaped(value);
    put('"');
    return *this;
}

XmlWriter& XmlWriter::attribute(std::string_view name, const Pegasus::String& value) {
    return attribute(name, value.getChar16Data(), value.size());
}

XmlWriter& XmlWriter::attribute(std::string_view name, const Pegasus::Char16* value,
                                size_t length) {
    if (!startTagPending_)
        throw std::logic_error("XML attribute written outside a start tag");
    put(' ');
    put(name);
    put("=\"");
    putEscaped(value, length);
    put('"');
    return *this;
}

XmlWriter& XmlWriter::attribute(std::string_view name, const Pegasus::CIMName& value) {
    if (!startTagPending_)
        throw std::logic_error("XML attribute written outside a start tag");
    put(' ');
    put(name);
    put("=\"");
    const Pegasus::String& text = value.getString();
    const Pegasus::Char16* units = text.getChar16Data();
    if (names_.empty())
        names_.resize(127);
    EscapedName& slot = names_[(reinterpret_cast<std::uintptr_t>(units) >> 4) % names_.size()];
    if (slot.units == units && text.size() != 0) {
        put(slot.bytes);
    } else {
        const size_t start = size_;
        putEscaped(units, text.size());
        slot.units = units;
        slot.text = text;
        slot.bytes.assign(data_.get() + start, size_ - start);
    }
    put('"');
    return *this;
}

XmlWriter& XmlWriter::text(const Pegasus::String& text) {
    finishStartTag();
    putEscaped(text.getChar16Data(), text.size());
    return *this;
}

XmlWriter& XmlWriter::text(std::string_view text) {
    finishStartTag();
    putEscaped(text);
    return *this;
}

XmlWriter& XmlWriter::close() {
    if (open_.empty())
        throw std::logic_error("XML end tag without an open element");
    finishStartTag();
    put("</");
    put(open_.back());
    put('>');
    open_.pop_back();
    return *this;
}

XmlWriter& XmlWriter::closeEmpty() {
    if (open_.empty() || !startTagPending_)
        throw std::logic_error("self-closing XML element that has content");
    put("/>");
    startTagPending_ = false;
    open_.pop_back();
    return *this;
}

void XmlWriter::rollBack(const Mark& mark) {
    if (mark.bytes > size_ || mark.depth > open_.size())
        throw std::logic_error("XML writer rolled back past text already handed away");
    size_ = mark.bytes;
    open_.resize(mark.depth);
    startTagPending_ = mark.startTagPending;
}

std::string XmlWriter::take() {
    if (!open_.empty())
        throw std::logic_error("XML document taken with open elements");
    std::string text(data_.get() ? data_.get() : "", size_);
    size_ = 0;
    return text;
}

} // namespace vexa::cimxml::detail
