// The class schema that vexa-cimserver answers class operations from and
// types method parameters with. It is read from MOF text: the project's own
// schema (mof/) over the few CIM superclass declarations the server carries.
//
// A repository is filled once and then only read, so any number of request
// threads may query it at the same time without a lock.
#ifndef VEXA_SCHEMA_SCHEMAREPOSITORY_H
#define VEXA_SCHEMA_SCHEMAREPOSITORY_H

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMPropertyList.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace vexa::schema {

// A MOF text that cannot be read: names the file (or source name), the
// line and what is wrong, e.g.
//   "mof/VexaNode.mof:12: unknown type "unit32" of property vexaNodeThreadWait".
class MofError : public std::runtime_error {
public:
    MofError(const std::string& source, unsigned line, const std::string& problem);
    const std::string& source() const { return source_; }
    unsigned line() const { return line_; }
    const std::string& problem() const { return problem_; }

private:
    std::string source_;
    unsigned line_;
    std::string problem_;
};

// An instance declared in MOF ("instance of ..."), kept so that it can be
// checked. Instances of a class the repository holds are typed by that
// class; others (such as the CIM server's own registration classes) keep
// the types their literals suggest: String, Boolean, Uint64 (Sint64 when
// negative), Real64, arrays of these, or a null value for NULL.
struct MofInstance {
    Pegasus::CIMInstance instance;
    std::string source;
    unsigned line = 0;
};

class SchemaRepository {
public:
    SchemaRepository();
    ~SchemaRepository();
    SchemaRepository(SchemaRepository&&) noexcept;
    SchemaRepository& operator=(SchemaRepository&&) noexcept;

    // The schema compiled into the server: the superclass declarations and
    // every class of mof/. Throws MofError only if the build embedded a
    // broken file, which the tests rule out.
    static SchemaRepository builtIn();

    // Adds the classes of one MOF file; "#pragma include" names are taken
    // relative to the including file. A superclass must already be known.
    // Throws MofError; on error the repository is unchanged.
    void loadFile(const std::string& path);
    // The same for MOF text held in memory; sourceName is used in errors and
    // as the base of relative includes.
    void loadText(const std::string& text, const std::string& sourceName);

    // Classes are stored resolved: inherited properties and methods are
    // present, with their class origin set and marked propagated, as a CIM
    // server's repository holds them. Look-ups ignore case.
    const Pegasus::CIMClass* findClass(const Pegasus::CIMName& name) const;

    // The class as a GetClass request asks for it: localOnly drops the
    // propagated elements, the flags drop qualifiers and class origins, a
    // non-null property list keeps only the properties it names. Throws
    // nothing; returns an uninitialised CIMClass when the class is unknown.
    Pegasus::CIMClass classForRequest(const Pegasus::CIMName& name, bool localOnly,
                                      bool includeQualifiers, bool includeClassOrigin,
                                      const Pegasus::CIMPropertyList& propertyList) const;

    // Names of the direct subclasses of `parent` (all descendants when
    // `deep`); a null `parent` means the classes without a superclass.
    // Sorted by name, so answers are stable.
    Pegasus::Array<Pegasus::CIMName> subclassNames(const Pegasus::CIMName& parent, bool deep) const;

    // True when `name` is `ancestor` or derives from it.
    bool isA(const Pegasus::CIMName& name, const Pegasus::CIMName& ancestor) const;

    size_t classCount() const;

    // The instance declarations read so far, in the order read.
    const std::vector<MofInstance>& instances() const;

    // The type of a declared property or parameter as its values carry it:
    // a string qualified EmbeddedObject holds objects (CIMTYPE_OBJECT) and
    // one qualified EmbeddedInstance holds instances (CIMTYPE_INSTANCE);
    // every other element has its declared type.
    static Pegasus::CIMType valueType(const Pegasus::CIMConstProperty& property);
    static Pegasus::CIMType valueType(const Pegasus::CIMConstParameter& parameter);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace vexa::schema

#endif
