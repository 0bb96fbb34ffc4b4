#include "MofParser.h"

#include "Names.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/Exception.h>

PEGASUS_USING_PEGASUS;

namespace vexa::schema::detail {

namespace {

const char* const knownPragmas[] = {"include",  "locale",       "namespace", "instancelocale",
                                    "nonlocal", "nonlocaltype", "source",    "sourcetype"};

const char* elementName(int element) {
    static const char* const names[] = {"a class",  "a property",  "a reference",
                                        "a method", "a parameter", "an instance property"};
    return names[element];
}

bool scopeAllows(const CIMScope& scope, int element) {
    switch (element) {
    case 0: // Class: association and indication scopes name kinds of class.
        return scope.hasScope(CIMScope::CLASS) || scope.hasScope(CIMScope::ASSOCIATION) ||
               scope.hasScope(CIMScope::INDICATION);
    case 1:
        return scope.hasScope(CIMScope::PROPERTY);
    case 2:
        return scope.hasScope(CIMScope::REFERENCE);
    case 3:
        return scope.hasScope(CIMScope::METHOD);
    case 4:
        return scope.hasScope(CIMScope::PARAMETER);
    default:
        return true;
    }
}

std::string scopeText(const CIMScope& scope) {
    std::string text = foldCase(toStd(scope.toString()));
    return text.empty() ? "nothing" : text;
}

void addFlavorWord(CIMFlavor& flavor, const Token& word) {
    if (word.isWord("EnableOverride")) {
        flavor.removeFlavor(CIMFlavor::DISABLEOVERRIDE);
        flavor.addFlavor(CIMFlavor::ENABLEOVERRIDE);
    } else if (word.isWord("DisableOverride")) {
        flavor.removeFlavor(CIMFlavor::ENABLEOVERRIDE);
        flavor.addFlavor(CIMFlavor::DISABLEOVERRIDE);
    } else if (word.isWord("ToSubclass")) {
        flavor.removeFlavor(CIMFlavor::RESTRICTED);
        flavor.addFlavor(CIMFlavor::TOSUBCLASS);
    } else if (word.isWord("Restricted")) {
        flavor.removeFlavor(CIMFlavor::TOSUBCLASS);
        flavor.addFlavor(CIMFlavor::RESTRICTED);
    } else {
        flavor.addFlavor(CIMFlavor::TRANSLATABLE);
    }
}

bool isFlavorWord(const Token& word) {
    return word.isWord("EnableOverride") || word.isWord("DisableOverride") ||
           word.isWord("ToSubclass") || word.isWord("Restricted") || word.isWord("Translatable");
}

} // namespace

unsigned DeclaredClass::lineOf(const std::string& foldedFeature) const {
    auto found = featureLines.find(foldedFeature);
    return found == featureLines.end() ? line : found->second;
}

bool typeFromKeyword(const Token& word, CIMType* type) {
    static const struct {
        const char* name;
        CIMType type;
    } types[] = {
        {"boolean", CIMTYPE_BOOLEAN},   {"string", CIMTYPE_STRING}, {"char16", CIMTYPE_CHAR16},
        {"datetime", CIMTYPE_DATETIME}, {"uint8", CIMTYPE_UINT8},   {"sint8", CIMTYPE_SINT8},
        {"uint16", CIMTYPE_UINT16},     {"sint16", CIMTYPE_SINT16}, {"uint32", CIMTYPE_UINT32},
        {"sint32", CIMTYPE_SINT32},     {"uint64", CIMTYPE_UINT64}, {"sint64", CIMTYPE_SINT64},
        {"real32", CIMTYPE_REAL32},     {"real64", CIMTYPE_REAL64}};
    for (const auto& entry : types) {
        if (word.isWord(entry.name)) {
            *type = entry.type;
            return true;
        }
    }
    return false;
}

MofParser::MofParser(const std::string& text, const std::string& source, QualifierTable& qualifiers,
                     DeclarationSink& sink)
    : lexer_(text, source), source_(source), qualifiers_(qualifiers), sink_(sink) {}

Token MofParser::next() {
    if (haveLookahead_) {
        haveLookahead_ = false;
        lastToken_ = lookahead_;
    } else {
        lastToken_ = lexer_.next();
    }
    return lastToken_;
}

const Token& MofParser::peek() {
    if (!haveLookahead_) {
        lookahead_ = lexer_.next();
        haveLookahead_ = true;
    }
    return lookahead_;
}

void MofParser::fail(unsigned line, const std::string& problem) const {
    throw MofError(source_, line, problem);
}

Token MofParser::expect(char punct, const std::string& context) {
    unsigned line = lastToken_.line != 0 ? lastToken_.line : peek().line;
    Token token = next();
    if (!token.is(punct)) {
        fail(line,
             std::string("expected '") + punct + "' " + context + ", found " + token.describe());
    }
    return token;
}

Token MofParser::expectName(const std::string& what) {
    Token token = next();
    if (token.kind != Token::Identifier) {
        fail(token.line, "expected " + what + ", found " + token.describe());
    }
    return token;
}

void MofParser::parse() {
    try {
        parseDeclarations();
    } catch (const Exception& e) {
        // The CIM layer refuses what the grammar let through (a name it
        // does not accept, for one); say so at the place it was read.
        fail(lastToken_.line, toStd(e.getMessage()));
    }
}

void MofParser::parseDeclarations() {
    while (true) {
        const Token& token = peek();
        if (token.kind == Token::End) {
            return;
        }
        if (token.is('#')) {
            parsePragma();
        } else if (token.isWord("qualifier")) {
            parseQualifierDeclaration();
        } else {
            unsigned line = token.line;
            std::vector<WrittenQualifier> qualifiers = parseQualifierList();
            Token keyword = next();
            if (keyword.isWord("class")) {
                parseClass(std::move(qualifiers), keyword.line);
            } else if (keyword.isWord("instance")) {
                parseInstance(qualifiers.empty() ? keyword.line : line);
            } else {
                fail(keyword.line, "expected a class, instance or qualifier declaration or "
                                   "#pragma, found " +
                                       keyword.describe());
            }
        }
    }
}

void MofParser::parsePragma() {
    Token hash = next();
    Token word = next();
    if (!word.isWord("pragma")) {
        fail(hash.line, "expected \"pragma\" after '#', found " + word.describe());
    }
    Token name = expectName("the name of the pragma");
    bool known = false;
    for (const char* pragma : knownPragmas) {
        known = known || name.isWord(pragma);
    }
    if (!known) {
        fail(name.line, "unknown pragma \"" + name.text +
                            "\"; expected include, locale, namespace, instancelocale, nonlocal, "
                            "nonlocaltype, source or sourcetype");
    }
    expect('(', "after #pragma " + name.text);
    MofLiteral value = parseLiteral();
    if (value.kind != MofLiteral::String) {
        fail(value.line, "#pragma " + name.text + " takes a string, such as (\"file.mof\")");
    }
    expect(')', "after the value of #pragma " + name.text);
    if (name.isWord("include")) {
        sink_.include(value.text, source_, name.line);
    }
    // The other pragmas name locales and namespaces; one repository serves
    // one namespace in one locale, so they change nothing here.
}

void MofParser::parseQualifierDeclaration() {
    next(); // "qualifier"
    Token name = expectName("the name of the qualifier being declared");
    expect(':', "after qualifier " + name.text);
    Token typeWord = next();
    CIMType type;
    if (!typeFromKeyword(typeWord, &type)) {
        fail(typeWord.line, "unknown type " + typeWord.describe() + " of qualifier " + name.text +
                                "; expected boolean, string, char16, datetime, real32, real64 "
                                "or an integer type such as uint32");
    }
    bool isArray = false;
    Uint32 arraySize = parseArraySuffix(&isArray);
    CIMValue value(type, isArray, arraySize);
    if (peek().is('=')) {
        next();
        value = literalToValue(parseLiteral(), type, isArray, "qualifier " + name.text, source_);
    }
    expect(',', "before the Scope of qualifier " + name.text);
    Token scopeWord = expectName("Scope");
    if (!scopeWord.isWord("scope")) {
        fail(scopeWord.line, "expected Scope (...) in the declaration of qualifier " + name.text +
                                 ", found " + scopeWord.describe());
    }
    expect('(', "after Scope");
    CIMScope scope;
    while (true) {
        Token word = expectName("a scope: class, association, indication, property, reference, "
                                "method, parameter or any");
        static const struct {
            const char* word;
            const CIMScope* scope;
        } scopes[] = {
            {"class", &CIMScope::CLASS},           {"association", &CIMScope::ASSOCIATION},
            {"indication", &CIMScope::INDICATION}, {"property", &CIMScope::PROPERTY},
            {"reference", &CIMScope::REFERENCE},   {"method", &CIMScope::METHOD},
            {"parameter", &CIMScope::PARAMETER},   {"any", &CIMScope::ANY},
            {"qualifier", &CIMScope::NONE}};
        bool known = false;
        for (const auto& entry : scopes) {
            if (word.isWord(entry.word)) {
                scope.addScope(*entry.scope);
                known = true;
            }
        }
        if (!known) {
            fail(word.line, "unknown scope " + word.describe() +
                                "; expected class, association, indication, property, "
                                "reference, method, parameter or any");
        }
        if (!peek().is(',')) {
            break;
        }
        next();
    }
    expect(')', "after the scopes of qualifier " + name.text);
    CIMFlavor flavor = CIMFlavor::TOSUBCLASS + CIMFlavor::ENABLEOVERRIDE;
    if (peek().is(',')) {
        next();
        Token flavorWord = expectName("Flavor");
        if (!flavorWord.isWord("flavor")) {
            fail(flavorWord.line, "expected Flavor (...) after the scope of qualifier " +
                                      name.text + ", found " + flavorWord.describe());
        }
        flavor = parseFlavors(flavor, true);
    }
    expect(';', "after the declaration of qualifier " + name.text);
    qualifiers_.declare(
        CIMQualifierDecl(CIMName(name.text.c_str()), value, scope, flavor, arraySize));
}

CIMFlavor MofParser::parseFlavors(CIMFlavor flavor, bool inParentheses) {
    if (inParentheses) {
        expect('(', "after Flavor");
    }
    while (true) {
        if (inParentheses) {
            Token word = expectName("a flavor");
            if (!isFlavorWord(word)) {
                fail(word.line, "unknown flavor " + word.describe() +
                                    "; expected EnableOverride, DisableOverride, ToSubclass, "
                                    "Restricted or Translatable");
            }
            addFlavorWord(flavor, word);
            if (!peek().is(',')) {
                break;
            }
            next();
        } else {
            if (!isFlavorWord(peek())) {
                break;
            }
            addFlavorWord(flavor, next());
        }
    }
    if (inParentheses) {
        expect(')', "after the flavors");
    }
    return flavor;
}

std::vector<MofParser::WrittenQualifier> MofParser::parseQualifierList() {
    std::vector<WrittenQualifier> result;
    if (!peek().is('[')) {
        return result;
    }
    next();
    while (true) {
        Token name = expectName("a qualifier name");
        const CIMQualifierDecl* declaration = qualifiers_.find(name.text);
        if (declaration == nullptr) {
            fail(name.line, "unknown qualifier \"" + name.text +
                                "\"; expected a standard CIM qualifier (such as Key, "
                                "Description, Override) or one declared earlier with "
                                "\"Qualifier\"");
        }
        for (const WrittenQualifier& earlier : result) {
            if (earlier.qualifier.getName().equal(CIMName(name.text.c_str()))) {
                fail(name.line, "qualifier " + name.text + " is given twice");
            }
        }
        std::string what = "qualifier " + name.text;
        CIMValue value;
        if (peek().is('(') || peek().is('{')) {
            bool parenthesised = peek().is('(');
            if (parenthesised) {
                next();
            }
            MofLiteral literal = parseLiteral();
            if (parenthesised) {
                expect(')', "after the value of qualifier " + name.text);
            }
            if (declaration->isArray() && literal.kind != MofLiteral::List &&
                literal.kind != MofLiteral::Null) {
                MofLiteral list;
                list.kind = MofLiteral::List;
                list.line = literal.line;
                list.elements.push_back(literal);
                literal = list;
            }
            value = literalToValue(literal, declaration->getType(), declaration->isArray(), what,
                                   source_);
        } else if (declaration->getType() == CIMTYPE_BOOLEAN && !declaration->isArray()) {
            value = CIMValue(true);
        } else {
            fail(name.line, "qualifier " + toStd(declaration->getName()) +
                                " needs a value of type " + typeName(declaration->getType()) +
                                (declaration->isArray() ? "[]" : "") + ", such as " +
                                toStd(declaration->getName()) +
                                (declaration->isArray() ? " {\"...\"}" : " (\"...\")"));
        }
        CIMFlavor flavor = declaration->getFlavor();
        if (peek().is(':')) {
            next();
            if (!isFlavorWord(peek())) {
                fail(peek().line, "expected a flavor after ':' (EnableOverride, "
                                  "DisableOverride, ToSubclass, Restricted or Translatable), "
                                  "found " +
                                      peek().describe());
            }
            flavor = parseFlavors(flavor, false);
        }
        result.push_back({CIMQualifier(declaration->getName(), value, flavor), name.line});
        Token separator = next();
        if (separator.is(']')) {
            break;
        }
        if (!separator.is(',')) {
            fail(separator.line,
                 "expected ',' or ']' in the qualifier list, found " + separator.describe());
        }
    }
    return result;
}

template <typename Target>
void MofParser::attach(Target& target, const std::vector<WrittenQualifier>& qualifiers,
                       Element element, const std::string& what) {
    for (const WrittenQualifier& written : qualifiers) {
        const CIMQualifierDecl* declaration = qualifiers_.find(toStd(written.qualifier.getName()));
        if (!scopeAllows(declaration->getScope(), static_cast<int>(element))) {
            fail(written.line, "qualifier " + toStd(declaration->getName()) +
                                   " cannot be used on " + elementName(static_cast<int>(element)) +
                                   " (" + what + "); its scope is " +
                                   scopeText(declaration->getScope()));
        }
        target.addQualifier(written.qualifier);
    }
}

Uint32 MofParser::parseArraySuffix(bool* isArray) {
    *isArray = false;
    if (!peek().is('[')) {
        return 0;
    }
    next();
    *isArray = true;
    Uint32 size = 0;
    if (peek().kind == Token::Integer) {
        MofLiteral literal;
        literal.kind = MofLiteral::Integer;
        Token number = next();
        literal.text = number.text;
        literal.line = number.line;
        literalToValue(literal, CIMTYPE_UINT32, false, "an array size", source_).get(size);
    }
    expect(']', "to close the array brackets");
    return size;
}

void MofParser::parseClass(std::vector<WrittenQualifier> qualifiers, unsigned line) {
    Token name = expectName("a class name after \"class\"");
    CIMName superclass;
    if (peek().is(':')) {
        next();
        superclass = CIMName(expectName("the superclass name after ':'").text.c_str());
    }
    DeclaredClass declared;
    declared.local = CIMClass(CIMName(name.text.c_str()), superclass);
    declared.source = source_;
    declared.line = line;
    attach(declared.local, qualifiers, Element::Class, "class " + name.text);
    expect('{', "after the head of class " + name.text);
    while (!peek().is('}')) {
        if (peek().kind == Token::End) {
            fail(peek().line, "class " + name.text + " (line " + std::to_string(line) +
                                  ") is not closed; expected '}' before the end of the file");
        }
        parseFeature(declared);
    }
    next();
    expect(';', "after the closing '}' of class " + name.text);
    sink_.declareClass(std::move(declared));
}

void MofParser::parseFeature(DeclaredClass& declared) {
    std::string className = toStd(declared.local.getClassName());
    std::vector<WrittenQualifier> qualifiers = parseQualifierList();
    Token typeWord = next();
    CIMType type = CIMTYPE_BOOLEAN;
    CIMName referenceClass;
    Token name;
    if (typeFromKeyword(typeWord, &type)) {
        name = expectName("a property or method name after the type " + typeWord.text);
        if (peek().is('(')) {
            parseMethod(declared, std::move(qualifiers), type, name);
            return;
        }
    } else if (typeWord.kind == Token::Identifier) {
        Token second = next();
        if (second.isWord("ref")) {
            type = CIMTYPE_REFERENCE;
            referenceClass = CIMName(typeWord.text.c_str());
            name = expectName("a reference name after \"" + typeWord.text + " REF\"");
            if (peek().is('(')) {
                fail(name.line, "method " + name.text +
                                    " cannot return a reference; declare "
                                    "it with a CIM type such as uint32");
            }
        } else {
            std::string subject = second.kind == Token::Identifier
                                      ? (peek().is('(') ? "method " : "property ") + second.text
                                      : "a property";
            fail(typeWord.line, "unknown type \"" + typeWord.text + "\" of " + subject +
                                    "; expected a CIM type (boolean, string, char16, datetime, "
                                    "uint8 to sint64, real32, real64) or a class name "
                                    "followed by REF");
        }
    } else {
        fail(typeWord.line, "expected a property, reference or method declaration or the '}' "
                            "that closes class " +
                                className + ", found " + typeWord.describe());
    }

    std::string folded = foldCase(name.text);
    if (declared.featureLines.count(folded) != 0) {
        fail(name.line, "property " + name.text + " is declared twice in class " + className +
                            " (first on line " + std::to_string(declared.featureLines[folded]) +
                            ")");
    }
    bool isArray = false;
    Uint32 arraySize = parseArraySuffix(&isArray);
    if (isArray && type == CIMTYPE_REFERENCE) {
        fail(name.line, "reference " + name.text + " cannot be an array");
    }
    std::string what = "property " + name.text;
    CIMValue value(type, isArray, arraySize);
    if (peek().is('=')) {
        next();
        MofLiteral literal = parseLiteral();
        value = literalToValue(literal, type, isArray, what, source_);
        if (value.isNull()) {
            value = CIMValue(type, isArray, arraySize);
        } else if (arraySize != 0 && value.getArraySize() != arraySize) {
            fail(literal.line, what + " holds " + std::to_string(arraySize) +
                                   " elements, but its value gives " +
                                   std::to_string(value.getArraySize()));
        }
    }
    expect(';', "after " + what);
    CIMProperty property(CIMName(name.text.c_str()), value, arraySize, referenceClass);
    attach(property, qualifiers, type == CIMTYPE_REFERENCE ? Element::Reference : Element::Property,
           className + "." + name.text);
    declared.local.addProperty(property);
    declared.featureLines[folded] = name.line;
}

void MofParser::parseMethod(DeclaredClass& declared, std::vector<WrittenQualifier> qualifiers,
                            CIMType type, const Token& name) {
    std::string className = toStd(declared.local.getClassName());
    std::string key = "()" + foldCase(name.text);
    if (declared.featureLines.count(key) != 0) {
        fail(name.line, "method " + name.text + " is declared twice in class " + className);
    }
    CIMMethod method(CIMName(name.text.c_str()), type);
    attach(method, qualifiers, Element::Method, className + "." + name.text + "()");
    next(); // '('
    if (!peek().is(')')) {
        while (true) {
            std::vector<WrittenQualifier> parameterQualifiers = parseQualifierList();
            Token typeWord = next();
            CIMType parameterType = CIMTYPE_BOOLEAN;
            CIMName referenceClass;
            if (!typeFromKeyword(typeWord, &parameterType)) {
                if (typeWord.kind != Token::Identifier || !peek().isWord("ref")) {
                    std::string subject = peek().kind == Token::Identifier
                                              ? "parameter " + peek().text
                                              : "a parameter";
                    fail(typeWord.line, "unknown type " + typeWord.describe() + " of " + subject +
                                            " of method " + name.text +
                                            "; expected a CIM type or a class name followed by "
                                            "REF");
                }
                next();
                parameterType = CIMTYPE_REFERENCE;
                referenceClass = CIMName(typeWord.text.c_str());
            }
            Token parameterName = expectName("a parameter name of method " + name.text);
            bool isArray = false;
            Uint32 arraySize = parseArraySuffix(&isArray);
            if (method.findParameter(CIMName(parameterName.text.c_str())) != PEG_NOT_FOUND) {
                fail(parameterName.line, "parameter " + parameterName.text +
                                             " is declared twice in method " + name.text);
            }
            CIMParameter parameter(CIMName(parameterName.text.c_str()), parameterType, isArray,
                                   arraySize, referenceClass);
            attach(parameter, parameterQualifiers, Element::Parameter,
                   name.text + "(" + parameterName.text + ")");
            method.addParameter(parameter);
            Token separator = next();
            if (separator.is(')')) {
                break;
            }
            if (!separator.is(',')) {
                fail(lastToken_.line, "expected ',' or ')' after parameter " + parameterName.text +
                                          " of method " + name.text + ", found " +
                                          separator.describe());
            }
        }
    } else {
        next();
    }
    expect(';', "after method " + name.text + "()");
    declared.local.addMethod(method);
    declared.featureLines[key] = name.line;
}

void MofParser::parseInstance(unsigned line) {
    Token of = next();
    if (!of.isWord("of")) {
        fail(of.line, "expected \"of\" after \"instance\", found " + of.describe());
    }
    Token className = expectName("a class name after \"instance of\"");
    if (peek().isWord("as")) {
        next();
        expect('$', "before the alias name");
        expectName("an alias name");
    }
    const CIMClass* cimClass = sink_.knownClass(CIMName(className.text.c_str()));
    CIMInstance instance(CIMName(className.text.c_str()));
    expect('{', "after \"instance of " + className.text + "\"");
    while (!peek().is('}')) {
        if (peek().kind == Token::End) {
            fail(peek().line, "instance of " + className.text + " (line " + std::to_string(line) +
                                  ") is not closed; expected '}' before the end of the file");
        }
        std::vector<WrittenQualifier> qualifiers = parseQualifierList();
        Token name = expectName("a property name in the instance of " + className.text);
        expect('=', "after property " + name.text);
        MofLiteral literal = parseLiteral();
        expect(';', "after the value of property " + name.text);
        std::string what = "property " + name.text;
        CIMName propertyName(name.text.c_str());
        if (instance.findProperty(propertyName) != PEG_NOT_FOUND) {
            fail(name.line,
                 "property " + name.text + " is given twice in the instance of " + className.text);
        }
        CIMValue value;
        CIMName referenceClass;
        if (cimClass != nullptr) {
            Uint32 index = cimClass->findProperty(propertyName);
            if (index == PEG_NOT_FOUND) {
                fail(name.line, "class " + className.text + " has no property " + name.text);
            }
            CIMConstProperty declaredProperty = cimClass->getProperty(index);
            value = literalToValue(literal, declaredProperty.getType(), declaredProperty.isArray(),
                                   what, source_);
            referenceClass = declaredProperty.getReferenceClassName();
            propertyName = declaredProperty.getName();
        } else {
            value = literalToInferredValue(literal, what, source_);
        }
        CIMProperty property(propertyName, value, 0, referenceClass);
        attach(property, qualifiers, Element::Instance, className.text + "." + name.text);
        instance.addProperty(property);
    }
    next();
    expect(';', "after the closing '}' of the instance of " + className.text);
    MofInstance declared;
    declared.instance = instance;
    declared.source = source_;
    declared.line = line;
    sink_.declareInstance(std::move(declared));
}

MofLiteral MofParser::parseLiteral() {
    Token token = next();
    MofLiteral literal;
    literal.line = token.line;
    switch (token.kind) {
    case Token::String:
        literal.kind = MofLiteral::String;
        literal.text = token.text;
        // Adjacent strings are one string: long texts are written so.
        while (peek().kind == Token::String) {
            literal.text += next().text;
        }
        return literal;
    case Token::Integer:
        literal.kind = MofLiteral::Integer;
        literal.text = token.text;
        return literal;
    case Token::Real:
        literal.kind = MofLiteral::Real;
        literal.text = token.text;
        return literal;
    case Token::Char:
        literal.kind = MofLiteral::Char;
        literal.text = token.text;
        return literal;
    default:
        break;
    }
    if (token.isWord("true") || token.isWord("false")) {
        literal.kind = MofLiteral::Boolean;
        literal.boolean = token.isWord("true");
        return literal;
    }
    if (token.isWord("null")) {
        return literal;
    }
    if (token.is('{')) {
        literal.kind = MofLiteral::List;
        if (peek().is('}')) {
            next();
            return literal;
        }
        while (true) {
            literal.elements.push_back(parseLiteral());
            Token separator = next();
            if (separator.is('}')) {
                return literal;
            }
            if (!separator.is(',')) {
                fail(separator.line,
                     "expected ',' or '}' in the list of values, found " + separator.describe());
            }
        }
    }
    if (token.is('$')) {
        fail(token.line, "aliases ($name) are not supported as values; write the object path "
                         "as a string");
    }
    fail(token.line, "expected a value (a number, a string, a character, TRUE, FALSE, NULL or "
                     "{...}), found " +
                         token.describe());
}

} // namespace vexa::schema::detail
