#include <vexa/schema/SchemaRepository.h>

#include "BuiltInMof.h"
#include "ClassResolver.h"
#include "MofParser.h"
#include "Names.h"
#include "QualifierTable.h"

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <sstream>
#include <unordered_map>

PEGASUS_USING_PEGASUS;

namespace vexa::schema {

using namespace detail;

MofError::MofError(const std::string& source, unsigned line, const std::string& problem)
    : std::runtime_error(source + ":" + std::to_string(line) + ": " + problem), source_(source),
      line_(line), problem_(problem) {}

namespace {

struct ClassEntry {
    CIMClass resolved;
    std::string source;
    unsigned line = 0;
};

using ClassMap = std::unordered_map<std::string, ClassEntry>;

// Reads the text of a MOF source by path; nullopt with `error` set when it
// cannot.
using SourceReader =
    std::function<std::optional<std::string>(const std::string& path, std::string* error)>;

std::optional<std::string> readDiskFile(const std::string& path, std::string* error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        *error = std::strerror(errno);
        return std::nullopt;
    }
    std::ostringstream text;
    text << in.rdbuf();
    if (in.bad()) {
        *error = std::strerror(errno);
        return std::nullopt;
    }
    return text.str();
}

std::optional<std::string> readEmbeddedFile(const std::string& path, std::string* error) {
    for (size_t i = 0; i < embeddedMofFileCount; i++) {
        if (path == embeddedMofFiles[i].path) {
            return std::string(embeddedMofFiles[i].text);
        }
    }
    *error = "no such file among the MOF files built into the server";
    return std::nullopt;
}

std::string includedPath(const std::string& including, const std::string& name) {
    std::filesystem::path target(name);
    if (target.is_relative()) {
        target = std::filesystem::path(including).parent_path() / target;
    }
    return target.lexically_normal().generic_string();
}

bool isAIn(const ClassMap& first, const ClassMap& second, const CIMName& name,
           const CIMName& ancestor) {
    std::string wanted = foldCase(ancestor);
    std::string current = foldCase(name);
    // Bounded by the number of classes: a chain cannot be longer.
    for (size_t steps = 0; steps <= first.size() + second.size(); steps++) {
        if (current == wanted) {
            return true;
        }
        auto found = first.find(current);
        if (found == first.end()) {
            found = second.find(current);
            if (found == second.end()) {
                return false;
            }
        }
        const CIMName& parent = found->second.resolved.getSuperClassName();
        if (parent.isNull()) {
            return false;
        }
        current = foldCase(parent);
    }
    return false;
}

} // namespace

struct SchemaRepository::Impl {
    ClassMap classes;
    std::vector<MofInstance> instances;
    QualifierTable qualifiers;

    void load(const std::string& path, const std::optional<std::string>& text,
              const SourceReader& reader);
};

namespace {

// One load: everything read goes here first and reaches the repository
// only when the whole text (with its includes) has been read without error.
class Load : public DeclarationSink {
public:
    Load(const ClassMap& committed, const QualifierTable& knownQualifiers,
         const SourceReader& reader)
        : qualifiers(knownQualifiers), committed_(committed), reader_(reader) {}

    void read(const std::string& path, const std::string& text) {
        openSources_.push_back(path);
        MofParser(text, path, qualifiers, *this).parse();
        openSources_.pop_back();
    }

    void include(const std::string& name, const std::string& source, unsigned line) override {
        std::string path = includedPath(source, name);
        for (size_t i = 0; i < openSources_.size(); i++) {
            if (openSources_[i] == path) {
                std::string chain;
                for (size_t j = i; j < openSources_.size(); j++) {
                    chain += openSources_[j] + " includes ";
                }
                throw MofError(source, line, "include cycle: " + chain + path);
            }
        }
        std::string error;
        std::optional<std::string> text = reader_(path, &error);
        if (!text) {
            throw MofError(source, line,
                           "cannot read included file \"" + name + "\" (" + path + "): " + error +
                               "; names are taken relative to the including file");
        }
        read(path, *text);
    }

    void declareClass(DeclaredClass&& declared) override {
        const CIMName& name = declared.local.getClassName();
        std::string key = foldCase(name);
        const ClassEntry* earlier = find(key);
        if (earlier != nullptr) {
            throw MofError(declared.source, declared.line,
                           "class " + toStd(name) + " is already declared (" + earlier->source +
                               ":" + std::to_string(earlier->line) + ")");
        }
        const CIMName& superName = declared.local.getSuperClassName();
        const CIMClass* superclass = nullptr;
        if (!superName.isNull()) {
            const ClassEntry* parent = find(foldCase(superName));
            if (parent == nullptr) {
                throw MofError(declared.source, declared.line,
                               "unknown superclass " + toStd(superName) + " of class " +
                                   toStd(name) +
                                   "; declare it earlier or load the file that declares it first");
            }
            superclass = &parent->resolved;
        }
        IsA isA = [this](const CIMName& candidate, const CIMName& ancestor) {
            return isAIn(pending, committed_, candidate, ancestor);
        };
        ClassEntry entry;
        entry.resolved = resolveClass(declared, superclass, isA);
        entry.source = declared.source;
        entry.line = declared.line;
        pending.emplace(key, std::move(entry));
    }

    void declareInstance(MofInstance&& instance) override {
        instances.push_back(std::move(instance));
    }

    const CIMClass* knownClass(const CIMName& name) const override {
        const ClassEntry* entry = find(foldCase(name));
        return entry == nullptr ? nullptr : &entry->resolved;
    }

    QualifierTable qualifiers;
    ClassMap pending;
    std::vector<MofInstance> instances;

private:
    const ClassEntry* find(const std::string& key) const {
        auto found = pending.find(key);
        if (found != pending.end()) {
            return &found->second;
        }
        auto committed = committed_.find(key);
        return committed == committed_.end() ? nullptr : &committed->second;
    }

    const ClassMap& committed_;
    const SourceReader& reader_;
    std::vector<std::string> openSources_;
};

} // namespace

void SchemaRepository::Impl::load(const std::string& path, const std::optional<std::string>& text,
                                  const SourceReader& reader) {
    Load load(classes, qualifiers, reader);
    if (text) {
        load.read(path, *text);
    } else {
        std::string error;
        std::optional<std::string> fileText = reader(path, &error);
        if (!fileText) {
            throw MofError(path, 0, "cannot read the file: " + error);
        }
        load.read(path, *fileText);
    }
    for (auto& entry : load.pending) {
        classes.emplace(entry.first, std::move(entry.second));
    }
    for (MofInstance& instance : load.instances) {
        instances.push_back(std::move(instance));
    }
    qualifiers = load.qualifiers;
}

SchemaRepository::SchemaRepository() : impl_(std::make_unique<Impl>()) {}
SchemaRepository::~SchemaRepository() = default;
SchemaRepository::SchemaRepository(SchemaRepository&&) noexcept = default;
SchemaRepository& SchemaRepository::operator=(SchemaRepository&&) noexcept = default;

SchemaRepository SchemaRepository::builtIn() {
    SchemaRepository repository;
    for (const char* file : {builtInSuperclassFile, builtInSchemaFile}) {
        repository.impl_->load(file, std::nullopt, readEmbeddedFile);
    }
    return repository;
}

void SchemaRepository::loadFile(const std::string& path) {
    impl_->load(path, std::nullopt, readDiskFile);
}

void SchemaRepository::loadText(const std::string& text, const std::string& sourceName) {
    impl_->load(sourceName, text, readDiskFile);
}

const CIMClass* SchemaRepository::findClass(const CIMName& name) const {
    if (name.isNull()) {
        return nullptr;
    }
    auto found = impl_->classes.find(foldCase(name));
    return found == impl_->classes.end() ? nullptr : &found->second.resolved;
}

namespace {

template <typename Element>
void dropQualifiers(Element element) {
    for (Uint32 q = element.getQualifierCount(); q > 0; q--) {
        element.removeQualifier(q - 1);
    }
}

} // namespace

CIMClass SchemaRepository::classForRequest(const CIMName& name, bool localOnly,
                                           bool includeQualifiers, bool includeClassOrigin,
                                           const CIMPropertyList& propertyList) const {
    const CIMClass* found = findClass(name);
    if (found == nullptr) {
        return CIMClass();
    }
    CIMClass result = found->clone();
    for (Uint32 i = result.getPropertyCount(); i > 0; i--) {
        CIMProperty property = result.getProperty(i - 1);
        if ((localOnly && property.getPropagated()) ||
            (!propertyList.isNull() && !propertyList.contains(property.getName()))) {
            result.removeProperty(i - 1);
        }
    }
    for (Uint32 i = result.getMethodCount(); i > 0; i--) {
        if (localOnly && result.getMethod(i - 1).getPropagated()) {
            result.removeMethod(i - 1);
        }
    }
    if (!includeQualifiers) {
        dropQualifiers(result);
        for (Uint32 i = 0; i < result.getPropertyCount(); i++) {
            dropQualifiers(result.getProperty(i));
        }
        for (Uint32 i = 0; i < result.getMethodCount(); i++) {
            CIMMethod method = result.getMethod(i);
            dropQualifiers(method);
            for (Uint32 p = 0; p < method.getParameterCount(); p++) {
                dropQualifiers(method.getParameter(p));
            }
        }
    } else if (localOnly) {
        for (Uint32 q = result.getQualifierCount(); q > 0; q--) {
            if (result.getQualifier(q - 1).getPropagated()) {
                result.removeQualifier(q - 1);
            }
        }
    }
    if (!includeClassOrigin) {
        for (Uint32 i = 0; i < result.getPropertyCount(); i++) {
            result.getProperty(i).setClassOrigin(CIMName());
        }
        for (Uint32 i = 0; i < result.getMethodCount(); i++) {
            result.getMethod(i).setClassOrigin(CIMName());
        }
    }
    return result;
}

Array<CIMName> SchemaRepository::subclassNames(const CIMName& parent, bool deep) const {
    std::vector<CIMName> names;
    if (parent.isNull()) {
        for (const auto& entry : impl_->classes) {
            if (deep || entry.second.resolved.getSuperClassName().isNull()) {
                names.push_back(entry.second.resolved.getClassName());
            }
        }
    } else {
        std::vector<std::string> generation{foldCase(parent)};
        while (!generation.empty()) {
            std::vector<std::string> children;
            for (const auto& entry : impl_->classes) {
                const CIMName& super = entry.second.resolved.getSuperClassName();
                if (!super.isNull() && std::find(generation.begin(), generation.end(),
                                                 foldCase(super)) != generation.end()) {
                    names.push_back(entry.second.resolved.getClassName());
                    children.push_back(entry.first);
                }
            }
            generation = deep ? children : std::vector<std::string>();
        }
    }
    std::sort(names.begin(), names.end(), [](const CIMName& a, const CIMName& b) {
        std::string foldedA = foldCase(a);
        std::string foldedB = foldCase(b);
        return foldedA != foldedB ? foldedA < foldedB : toStd(a) < toStd(b);
    });
    Array<CIMName> result;
    for (const CIMName& name : names) {
        result.append(name);
    }
    return result;
}

bool SchemaRepository::isA(const CIMName& name, const CIMName& ancestor) const {
    if (name.isNull() || ancestor.isNull() || findClass(name) == nullptr) {
        return false;
    }
    return isAIn(impl_->classes, impl_->classes, name, ancestor);
}

size_t SchemaRepository::classCount() const { return impl_->classes.size(); }

const std::vector<MofInstance>& SchemaRepository::instances() const { return impl_->instances; }

namespace {

template <typename Element>
CIMType embeddedValueType(const Element& element) {
    if (element.getType() != CIMTYPE_STRING) {
        return element.getType();
    }
    Uint32 index = element.findQualifier(CIMName("EmbeddedObject"));
    if (index != PEG_NOT_FOUND) {
        const CIMValue& value = element.getQualifier(index).getValue();
        Boolean embedded = false;
        if (value.getType() == CIMTYPE_BOOLEAN && !value.isArray() && !value.isNull()) {
            value.get(embedded);
        }
        if (embedded) {
            return CIMTYPE_OBJECT;
        }
    }
    index = element.findQualifier(CIMName("EmbeddedInstance"));
    if (index != PEG_NOT_FOUND && !element.getQualifier(index).getValue().isNull()) {
        return CIMTYPE_INSTANCE;
    }
    return CIMTYPE_STRING;
}

} // namespace

CIMType SchemaRepository::valueType(const CIMConstProperty& property) {
    return embeddedValueType(property);
}

CIMType SchemaRepository::valueType(const CIMConstParameter& parameter) {
    return embeddedValueType(parameter);
}

} // namespace vexa::schema
