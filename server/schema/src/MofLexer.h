// Splits MOF text into tokens: names, literals and punctuation, each with
// the line it starts on. Comments and white space are dropped here.
#ifndef VEXA_SCHEMA_MOFLEXER_H
#define VEXA_SCHEMA_MOFLEXER_H

#include <string>

namespace vexa::schema::detail {

struct Token {
    enum Kind {
        End,        // end of the text
        Identifier, // a name or keyword, as written
        String,     // text: escapes resolved, UTF-8
        Char,       // a char16 literal: text holds the one character, UTF-8
        Integer,    // text holds the literal as written, sign included
        Real,       // likewise
        Punct,      // one of { } ( ) [ ] ; , : = $ #
    };
    Kind kind = End;
    std::string text;
    unsigned line = 0;

    bool is(char punct) const { return kind == Punct && text.size() == 1 && text[0] == punct; }
    // A keyword or name compared ignoring ASCII case, as MOF keywords are.
    bool isWord(const char* word) const;
    // How the token reads in an error message.
    std::string describe() const;
};

class MofLexer {
public:
    MofLexer(const std::string& text, const std::string& source);

    // Throws MofError for text that is no token (an unterminated string or
    // comment, a stray character).
    Token next();

private:
    char peek(size_t ahead = 0) const;
    void skipBlanksAndComments();
    Token readString();
    Token readChar();
    Token readNumber();
    unsigned readEscape(unsigned line);
    [[noreturn]] void fail(unsigned line, const std::string& problem) const;

    const std::string& text_;
    const std::string& source_;
    size_t pos_ = 0;
    unsigned line_ = 1;
};

// Appends the UTF-8 form of one code point.
void appendUtf8(std::string& out, unsigned codePoint);

} // namespace vexa::schema::detail

#endif
