#include "ClassResolver.h"

#include "MofLiteral.h"
#include "Names.h"

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

PEGASUS_USING_PEGASUS;

namespace vexa::schema::detail {

namespace {

bool isTrue(const CIMConstQualifier& qualifier) {
    if (qualifier.getType() != CIMTYPE_BOOLEAN || qualifier.isArray() ||
        qualifier.getValue().isNull()) {
        return false;
    }
    Boolean value = false;
    qualifier.getValue().get(value);
    return value;
}

template <typename Element>
bool hasTrueQualifier(const Element& element, const char* name) {
    Uint32 index = element.findQualifier(CIMName(name));
    return index != PEG_NOT_FOUND && isTrue(element.getQualifier(index));
}

std::string typeText(const CIMConstProperty& property) {
    std::string text = property.getType() == CIMTYPE_REFERENCE
                           ? toStd(property.getReferenceClassName()) + " REF"
                           : typeName(property.getType());
    return property.isArray() ? text + "[]" : text;
}

// Adds to `target` the inheritable qualifiers of `inherited` that `target`
// does not set itself, marked propagated; refuses a local change of a
// qualifier that may not be overridden.
template <typename Target, typename Source>
void inheritQualifiers(Target& target, const Source& inherited, const std::string& what,
                       const std::string& source, unsigned line) {
    for (Uint32 i = 0; i < inherited.getQualifierCount(); i++) {
        CIMConstQualifier qualifier = inherited.getQualifier(i);
        if (!qualifier.getFlavor().hasFlavor(CIMFlavor::TOSUBCLASS)) {
            continue;
        }
        Uint32 local = target.findQualifier(qualifier.getName());
        if (local == PEG_NOT_FOUND) {
            CIMQualifier copy = qualifier.clone();
            copy.setPropagated(true);
            target.addQualifier(copy);
        } else if (qualifier.getFlavor().hasFlavor(CIMFlavor::DISABLEOVERRIDE) &&
                   !(qualifier.getValue() == target.getQualifier(local).getValue())) {
            throw MofError(source, line,
                           "qualifier " + toStd(qualifier.getName()) + " of " + what +
                               " cannot be changed: it is inherited with flavor DisableOverride");
        }
    }
}

std::string overrideTarget(const CIMConstProperty& property) {
    Uint32 index = property.findQualifier(CIMName("Override"));
    if (index == PEG_NOT_FOUND || property.getQualifier(index).getValue().isNull()) {
        return std::string();
    }
    String target;
    property.getQualifier(index).getValue().get(target);
    return toStd(target);
}

std::string overrideTarget(const CIMConstMethod& method) {
    Uint32 index = method.findQualifier(CIMName("Override"));
    if (index == PEG_NOT_FOUND || method.getQualifier(index).getValue().isNull()) {
        return std::string();
    }
    String target;
    method.getQualifier(index).getValue().get(target);
    return toStd(target);
}

class Resolution {
public:
    Resolution(const DeclaredClass& declared, const CIMClass* superclass, const IsA& isA)
        : declared_(declared), local_(declared.local), superclass_(superclass), isA_(isA),
          className_(toStd(declared.local.getClassName())) {}

    CIMClass run() {
        CIMClass resolved(local_.getClassName(), local_.getSuperClassName());
        for (Uint32 i = 0; i < local_.getQualifierCount(); i++) {
            resolved.addQualifier(local_.getQualifier(i).clone());
        }
        if (superclass_ != nullptr) {
            inheritQualifiers(resolved, *superclass_, "class " + className_, declared_.source,
                              declared_.line);
        }
        bool association = resolved.isAssociation();
        if (superclass_ != nullptr && superclass_->isAssociation() && !association) {
            fail(declared_.line, "class " + className_ + " derives from association " +
                                     toStd(superclass_->getClassName()) +
                                     " and must itself be one");
        }
        addProperties(resolved, association);
        addMethods(resolved);
        return resolved;
    }

private:
    [[noreturn]] void fail(unsigned line, const std::string& problem) const {
        throw MofError(declared_.source, line, problem);
    }

    void addProperties(CIMClass& resolved, bool association) {
        Array<CIMName> inheritedKeys;
        if (superclass_ != nullptr) {
            superclass_->getKeyNames(inheritedKeys);
            for (Uint32 i = 0; i < superclass_->getPropertyCount(); i++) {
                CIMConstProperty inherited = superclass_->getProperty(i);
                Uint32 local = local_.findProperty(inherited.getName());
                if (local == PEG_NOT_FOUND) {
                    resolved.addProperty(propagated(inherited));
                } else {
                    resolved.addProperty(overriding(local_.getProperty(local), inherited));
                }
            }
        }
        for (Uint32 i = 0; i < local_.getPropertyCount(); i++) {
            CIMConstProperty property = local_.getProperty(i);
            if (resolved.findProperty(property.getName()) != PEG_NOT_FOUND) {
                continue; // an override, placed where the inherited one was
            }
            std::string name = toStd(property.getName());
            unsigned line = declared_.lineOf(foldCase(name));
            if (!overrideTarget(property).empty()) {
                fail(line, "property " + name + " of class " + className_ +
                               " is marked Override, but no superclass declares it");
            }
            if (property.getType() == CIMTYPE_REFERENCE && !association) {
                fail(line, "class " + className_ + " declares reference " + name +
                               " but is not an association; add the Association qualifier");
            }
            if (hasTrueQualifier(property, "Key") && inheritedKeys.size() != 0) {
                fail(line, "class " + className_ + " adds key property " + name +
                               ", but its superclass " + toStd(superclass_->getClassName()) +
                               " already has keys; a subclass cannot add keys");
            }
            CIMProperty copy = property.clone();
            copy.setClassOrigin(local_.getClassName());
            copy.setPropagated(false);
            resolved.addProperty(copy);
        }
    }

    static CIMProperty propagated(const CIMConstProperty& inherited) {
        CIMProperty copy = inherited.clone();
        for (Uint32 q = copy.getQualifierCount(); q > 0; q--) {
            CIMQualifier qualifier = copy.getQualifier(q - 1);
            if (!qualifier.getFlavor().hasFlavor(CIMFlavor::TOSUBCLASS)) {
                copy.removeQualifier(q - 1);
            } else {
                qualifier.setPropagated(true);
            }
        }
        copy.setPropagated(true);
        return copy;
    }

    CIMProperty overriding(const CIMConstProperty& local, const CIMConstProperty& inherited) {
        std::string name = toStd(local.getName());
        unsigned line = declared_.lineOf(foldCase(name));
        std::string origin = toStd(inherited.getClassOrigin());
        std::string target = overrideTarget(local);
        if (target.empty()) {
            fail(line, "property " + name + " of class " + className_ + " hides " + origin + "." +
                           name + "; mark it [Override (\"" + name + "\")]");
        }
        if (foldCase(target) != foldCase(name)) {
            fail(line, "property " + name + " of class " + className_ + " names Override (\"" +
                           target + "\"); an override must name the property itself");
        }
        bool sameType =
            local.getType() == inherited.getType() && local.isArray() == inherited.isArray();
        if (sameType && local.getType() == CIMTYPE_REFERENCE &&
            !isA_(local.getReferenceClassName(), inherited.getReferenceClassName())) {
            fail(line, "reference " + name + " of class " + className_ + " refers to " +
                           toStd(local.getReferenceClassName()) + ", which is not a subclass of " +
                           toStd(inherited.getReferenceClassName()) + " as " + origin + "." + name +
                           " requires");
        }
        if (!sameType) {
            fail(line, "property " + name + " of class " + className_ + " changes the type of " +
                           origin + "." + name + " from " + typeText(inherited) + " to " +
                           typeText(local));
        }
        CIMProperty copy = local.clone();
        inheritQualifiers(copy, inherited, "property " + name, declared_.source, line);
        copy.setClassOrigin(local_.getClassName());
        copy.setPropagated(false);
        return copy;
    }

    void addMethods(CIMClass& resolved) {
        if (superclass_ != nullptr) {
            for (Uint32 i = 0; i < superclass_->getMethodCount(); i++) {
                CIMConstMethod inherited = superclass_->getMethod(i);
                Uint32 local = local_.findMethod(inherited.getName());
                if (local == PEG_NOT_FOUND) {
                    CIMMethod copy = inherited.clone();
                    for (Uint32 q = copy.getQualifierCount(); q > 0; q--) {
                        if (!copy.getQualifier(q - 1).getFlavor().hasFlavor(
                                CIMFlavor::TOSUBCLASS)) {
                            copy.removeQualifier(q - 1);
                        } else {
                            copy.getQualifier(q - 1).setPropagated(true);
                        }
                    }
                    copy.setPropagated(true);
                    resolved.addMethod(copy);
                    continue;
                }
                CIMConstMethod method = local_.getMethod(local);
                std::string name = toStd(method.getName());
                unsigned line = declared_.lineOf("()" + foldCase(name));
                if (foldCase(overrideTarget(method)) != foldCase(name)) {
                    fail(line, "method " + name + " of class " + className_ + " hides " +
                                   toStd(inherited.getClassOrigin()) + "." + name +
                                   "(); mark it [Override (\"" + name + "\")]");
                }
                if (method.getType() != inherited.getType()) {
                    fail(line, "method " + name + " of class " + className_ +
                                   " changes the return type " + typeName(inherited.getType()) +
                                   " to " + typeName(method.getType()));
                }
                CIMMethod copy = method.clone();
                inheritQualifiers(copy, inherited, "method " + name, declared_.source, line);
                copy.setClassOrigin(local_.getClassName());
                copy.setPropagated(false);
                resolved.addMethod(copy);
            }
        }
        for (Uint32 i = 0; i < local_.getMethodCount(); i++) {
            CIMConstMethod method = local_.getMethod(i);
            if (resolved.findMethod(method.getName()) != PEG_NOT_FOUND) {
                continue;
            }
            std::string name = toStd(method.getName());
            if (!overrideTarget(method).empty()) {
                fail(declared_.lineOf("()" + foldCase(name)),
                     "method " + name + " of class " + className_ +
                         " is marked Override, but no superclass declares it");
            }
            CIMMethod copy = method.clone();
            copy.setClassOrigin(local_.getClassName());
            copy.setPropagated(false);
            resolved.addMethod(copy);
        }
    }

    const DeclaredClass& declared_;
    CIMConstClass local_;
    const CIMClass* superclass_;
    const IsA& isA_;
    std::string className_;
};

} // namespace

CIMClass resolveClass(const DeclaredClass& declared, const CIMClass* superclass, const IsA& isA) {
    return Resolution(declared, superclass, isA).run();
}

} // namespace vexa::schema::detail
