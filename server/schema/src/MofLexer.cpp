#include "MofLexer.h"

#include <vexa/schema/SchemaRepository.h>

#include <cctype>

namespace vexa::schema::detail {

namespace {

bool isNameStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
bool isNameChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }
bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }
bool isHexDigit(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

} // namespace

bool Token::isWord(const char* word) const {
    if (kind != Identifier) {
        return false;
    }
    size_t i = 0;
    for (; word[i] != '\0'; i++) {
        if (i >= text.size() || std::tolower(static_cast<unsigned char>(text[i])) !=
                                    std::tolower(static_cast<unsigned char>(word[i]))) {
            return false;
        }
    }
    return i == text.size();
}

std::string Token::describe() const {
    switch (kind) {
    case End:
        return "the end of the file";
    case String:
        return "the string \"" + text + "\"";
    case Char:
        return "the character '" + text + "'";
    case Punct:
        return "'" + text + "'";
    default:
        return "\"" + text + "\"";
    }
}

void appendUtf8(std::string& out, unsigned codePoint) {
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | (codePoint >> 6));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (codePoint >> 12));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

MofLexer::MofLexer(const std::string& text, const std::string& source)
    : text_(text), source_(source) {}

char MofLexer::peek(size_t ahead) const {
    return pos_ + ahead < text_.size() ? text_[pos_ + ahead] : '\0';
}

void MofLexer::fail(unsigned line, const std::string& problem) const {
    throw MofError(source_, line, problem);
}

void MofLexer::skipBlanksAndComments() {
    while (pos_ < text_.size()) {
        char c = text_[pos_];
        if (c == '\n') {
            line_++;
            pos_++;
        } else if (std::isspace(static_cast<unsigned char>(c))) {
            pos_++;
        } else if (c == '/' && peek(1) == '/') {
            while (pos_ < text_.size() && text_[pos_] != '\n') {
                pos_++;
            }
        } else if (c == '/' && peek(1) == '*') {
            unsigned start = line_;
            pos_ += 2;
            while (!(peek() == '*' && peek(1) == '/')) {
                if (pos_ >= text_.size()) {
                    fail(start, "unterminated comment: \"/*\" has no closing \"*/\"");
                }
                if (text_[pos_] == '\n') {
                    line_++;
                }
                pos_++;
            }
            pos_ += 2;
        } else {
            return;
        }
    }
}

Token MofLexer::next() {
    skipBlanksAndComments();
    Token token;
    token.line = line_;
    if (pos_ >= text_.size()) {
        return token;
    }
    char c = text_[pos_];
    if (isNameStart(c)) {
        size_t start = pos_;
        while (isNameChar(peek())) {
            pos_++;
        }
        token.kind = Token::Identifier;
        token.text = text_.substr(start, pos_ - start);
        return token;
    }
    if (c == '"') {
        return readString();
    }
    if (c == '\'') {
        return readChar();
    }
    if (isDigit(c) || ((c == '-' || c == '+' || c == '.') &&
                       (isDigit(peek(1)) || (peek(1) == '.' && isDigit(peek(2)))))) {
        return readNumber();
    }
    static const std::string punctuation = "{}()[];,:=$#";
    if (punctuation.find(c) != std::string::npos) {
        pos_++;
        token.kind = Token::Punct;
        token.text = std::string(1, c);
        return token;
    }
    std::string shown = std::isprint(static_cast<unsigned char>(c))
                            ? std::string(1, c)
                            : "\\x" + std::to_string(static_cast<unsigned char>(c));
    fail(line_, "unexpected character '" + shown +
                    "'; expected a name, a literal or one of { } ( ) [ ] ; , : = $ #");
}

unsigned MofLexer::readEscape(unsigned line) {
    // At the backslash.
    pos_++;
    char c = peek();
    pos_++;
    switch (c) {
    case 'b':
        return '\b';
    case 't':
        return '\t';
    case 'n':
        return '\n';
    case 'f':
        return '\f';
    case 'r':
        return '\r';
    case '"':
        return '"';
    case '\'':
        return '\'';
    case '\\':
        return '\\';
    case 'x':
    case 'X': {
        unsigned value = 0;
        int digits = 0;
        while (digits < 4 && isHexDigit(peek())) {
            char h = peek();
            value = value * 16 +
                    static_cast<unsigned>(isDigit(h) ? h - '0' : std::tolower(h) - 'a' + 10);
            pos_++;
            digits++;
        }
        if (digits == 0) {
            fail(line, "escape \"\\x\" needs 1 to 4 hexadecimal digits");
        }
        return value;
    }
    default:
        fail(line, std::string("unknown escape \"\\") +
                       (c == '\0' ? std::string() : std::string(1, c)) +
                       "\"; expected one of \\b \\t \\n \\f \\r \\\" \\' \\\\ \\xHHHH");
    }
}

Token MofLexer::readString() {
    Token token;
    token.kind = Token::String;
    token.line = line_;
    pos_++;
    while (true) {
        char c = peek();
        if (pos_ >= text_.size() || c == '\n') {
            fail(token.line, "unterminated string; a string must end with '\"' on the line "
                             "where it starts (join long texts as \"a\" \"b\")");
        }
        if (c == '"') {
            pos_++;
            return token;
        }
        if (c == '\\') {
            appendUtf8(token.text, readEscape(token.line));
        } else {
            token.text += c;
            pos_++;
        }
    }
}

Token MofLexer::readChar() {
    Token token;
    token.kind = Token::Char;
    token.line = line_;
    pos_++;
    if (peek() == '\\') {
        appendUtf8(token.text, readEscape(token.line));
    } else if (peek() != '\'' && peek() != '\n' && pos_ < text_.size()) {
        // One UTF-8 encoded character.
        do {
            token.text += text_[pos_++];
        } while ((static_cast<unsigned char>(peek()) & 0xC0) == 0x80);
    }
    if (peek() != '\'' || token.text.empty()) {
        fail(token.line, "bad character literal; expected one character between single quotes, "
                         "such as 'a' or '\\n'");
    }
    pos_++;
    return token;
}

Token MofLexer::readNumber() {
    Token token;
    token.line = line_;
    size_t start = pos_;
    if (peek() == '-' || peek() == '+') {
        pos_++;
    }
    bool real = false;
    if (peek() == '0' && (peek(1) == 'x' || peek(1) == 'X')) {
        pos_ += 2;
        while (isHexDigit(peek())) {
            pos_++;
        }
    } else {
        while (isDigit(peek())) {
            pos_++;
        }
        if (peek() == '.') {
            real = true;
            pos_++;
            while (isDigit(peek())) {
                pos_++;
            }
        }
        if (peek() == 'e' || peek() == 'E') {
            real = true;
            pos_++;
            if (peek() == '-' || peek() == '+') {
                pos_++;
            }
            while (isDigit(peek())) {
                pos_++;
            }
        } else if (!real && (peek() == 'b' || peek() == 'B')) {
            pos_++; // binary literal such as 101b
        }
    }
    if (isNameChar(peek())) {
        while (isNameChar(peek())) {
            pos_++;
        }
        fail(token.line, "malformed number \"" + text_.substr(start, pos_ - start) +
                             "\"; expected a decimal, 0x hexadecimal, 0 octal, b binary or "
                             "real number");
    }
    token.kind = real ? Token::Real : Token::Integer;
    token.text = text_.substr(start, pos_ - start);
    return token;
}

} // namespace vexa::schema::detail
