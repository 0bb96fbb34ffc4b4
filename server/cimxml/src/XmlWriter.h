// A small XML writer with the habits WBEM clients need: every element gets
// an explicit end tag unless the caller asks for the self-closing form
// (wbemcli's parser rejects <VALUE/>, <PROPERTY .../> and the like), text is
// escaped with the five named entities only (wbemcli shows numeric
// references verbatim), and bytes that would make the document
// ill-formed (control characters, broken UTF-8) become U+FFFD.
#ifndef VEXA_CIMXML_XMLWRITER_H
#define VEXA_CIMXML_XMLWRITER_H

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vexa::cimxml::detail {

// Element and attribute names are the writer's own literals, taken as views
// so that their lengths are known where they are written. Text is escaped
// as it is copied in: quotes too, since the same routine serves attributes
// and embedded instances read the same either way; UTF-16 text is
// converted to UTF-8 in the same pass, a lone surrogate becoming U+FFFD.
class XmlWriter {
public:
    XmlWriter() = default;
    ~XmlWriter();
    XmlWriter(const XmlWriter&) = delete;
    XmlWriter& operator=(const XmlWriter&) = delete;
    // A writer moved from is empty and may be written again.
    XmlWriter(XmlWriter&& x) noexcept { *this = std::move(x); }
    XmlWriter& operator=(XmlWriter&& x) noexcept {
        keepSpare();
        data_ = std::move(x.data_);
        size_ = std::exchange(x.size_, 0);
        capacity_ = std::exchange(x.capacity_, 0);
        open_ = std::move(x.open_);
        x.open_.clear();
        names_ = std::move(x.names_);
        x.names_.clear();
        startTagPending_ = std::exchange(x.startTagPending_, false);
        return *this;
    }

    XmlWriter& open(std::string_view name);
    XmlWriter& attribute(std::string_view name, std::string_view value);
    XmlWriter& attribute(std::string_view name, const char* value) {
        return attribute(name, std::string_view(value));
    }
    XmlWriter& attribute(std::string_view name, const std::string& value) {
        return attribute(name, std::string_view(value));
    }
    XmlWriter& attribute(std::string_view name, const Pegasus::String& value);
    XmlWriter& attribute(std::string_view name, const Pegasus::Char16* value, size_t length);
    // Names repeat in every object of an answer (property, key and class
    // names), so their escaped text is kept once made.
    XmlWriter& attribute(std::string_view name, const Pegasus::CIMName& value);
    XmlWriter& text(std::string_view text);
    XmlWriter& text(const char* text) { return this->text(std::string_view(text)); }
    XmlWriter& text(const std::string& text) { return this->text(std::string_view(text)); }
    XmlWriter& text(const Pegasus::String& text);
    // Ends the innermost open element with an end tag.
    XmlWriter& close();
    // An element without content, as <NAME .../>; only for the elements
    // both clients accept that way (NAMESPACE, CLASSNAME).
    XmlWriter& closeEmpty();
    XmlWriter& raw(std::string_view markup) {
        finishStartTag();
        put(markup);
        return *this;
    }

    size_t openElements() const { return open_.size(); }
    std::string take();

    // Hands the text written so far away (to be sent while the document
    // goes on) and keeps the buffer's memory for what follows.
    std::string_view pending() const { return std::string_view(data_.get(), size_); }
    void clearPending() { size_ = 0; }

    // A point to go back to when writing an element fails halfway.
    struct Mark {
        size_t bytes;
        size_t depth;
        bool startTagPending;
    };
    Mark mark() const { return {size_, open_.size(), startTagPending_}; }
    void rollBack(const Mark& mark);

private:
    void finishStartTag() {
        if (startTagPending_) {
            put('>');
            startTagPending_ = false;
        }
    }
    // Where the next `count` bytes go; they count once `size_` is moved on.
    char* room(size_t count) {
        if (capacity_ - size_ < count)
            grow(count);
        return data_.get() + size_;
    }
    void grow(size_t count);
    // Leaves the buffer to the next writer on this thread.
    void keepSpare() noexcept;
    void put(char c) {
        *room(1) = c;
        size_++;
    }
    void put(std::string_view bytes) {
        if (bytes.empty())
            return; // an empty view may have no data at all, and no room be made yet
        std::memcpy(room(bytes.size()), bytes.data(), bytes.size());
        size_ += bytes.size();
    }
    void putEscaped(std::string_view text);
    void putEscaped(const Pegasus::Char16* text, size_t length);

    std::unique_ptr<char[]> data_;
    size_t size_ = 0;
    size_t capacity_ = 0;
    std::vector<std::string_view> open_;
    bool startTagPending_ = false;

    // Escaped names by the address of their text; `text` keeps that text
    // alive, so an address always means the same name.
    struct EscapedName {
        const Pegasus::Char16* units = nullptr;
        Pegasus::String text;
        std::string bytes;
    };
    std::vector<EscapedName> names_;
};

} // namespace vexa::cimxml::detail

#endif
