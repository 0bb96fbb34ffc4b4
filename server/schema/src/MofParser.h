// Reads the declarations of one MOF text: compiler directives, qualifier
// declarations, classes and instances. Classes come out as written (their
// own elements only); inheritance is resolved by whoever receives them.
#ifndef VEXA_SCHEMA_MOFPARSER_H
#define VEXA_SCHEMA_MOFPARSER_H

#include "MofLexer.h"
#include "MofLiteral.h"
#include "QualifierTable.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMQualifier.h>

#include <vexa/schema/SchemaRepository.h>

#include <map>
#include <string>
#include <vector>

namespace vexa::schema::detail {

// A class as declared: its own qualifiers, properties and methods, with the
// lines they were written on so that later checks can point at them.
struct DeclaredClass {
    Pegasus::CIMClass local;
    std::string source;
    unsigned line = 0;
    // Folded property name -> line; methods under "()" + folded name.
    std::map<std::string, unsigned> featureLines;

    unsigned lineOf(const std::string& foldedFeature) const;
};

// Receives what the parser reads, in the order it is read.
class DeclarationSink {
public:
    virtual ~DeclarationSink() = default;
    // "#pragma include": reads the named file before the parser goes on.
    virtual void include(const std::string& name, const std::string& source, unsigned line) = 0;
    virtual void declareClass(DeclaredClass&& declared) = 0;
    virtual void declareInstance(MofInstance&& instance) = 0;
    // A class known so far (resolved), to type instance values; null if none.
    virtual const Pegasus::CIMClass* knownClass(const Pegasus::CIMName& name) const = 0;
};

class MofParser {
public:
    MofParser(const std::string& text, const std::string& source, QualifierTable& qualifiers,
              DeclarationSink& sink);

    // Throws MofError at the first mistake.
    void parse();

private:
    struct WrittenQualifier {
        Pegasus::CIMQualifier qualifier;
        unsigned line;
    };
    enum class Element { Class, Property, Reference, Method, Parameter, Instance };

    void parseDeclarations();
    Token next();
    const Token& peek();
    Token expect(char punct, const std::string& context);
    Token expectName(const std::string& what);
    [[noreturn]] void fail(unsigned line, const std::string& problem) const;

    void parsePragma();
    void parseQualifierDeclaration();
    void parseClass(std::vector<WrittenQualifier> qualifiers, unsigned line);
    void parseFeature(DeclaredClass& declared);
    void parseMethod(DeclaredClass& declared, std::vector<WrittenQualifier> qualifiers,
                     Pegasus::CIMType type, const Token& name);
    void parseInstance(unsigned line);
    std::vector<WrittenQualifier> parseQualifierList();
    MofLiteral parseLiteral();
    Pegasus::Uint32 parseArraySuffix(bool* isArray);
    Pegasus::CIMFlavor parseFlavors(Pegasus::CIMFlavor flavor, bool inParentheses);

    template <typename Target>
    void attach(Target& target, const std::vector<WrittenQualifier>& qualifiers, Element element,
                const std::string& what);

    Token lastToken_;
    MofLexer lexer_;
    Token lookahead_;
    bool haveLookahead_ = false;
    const std::string& source_;
    QualifierTable& qualifiers_;
    DeclarationSink& sink_;
};

// The CIM type named by a MOF type keyword; false when `word` names none.
bool typeFromKeyword(const Token& word, Pegasus::CIMType* type);

} // namespace vexa::schema::detail

#endif
