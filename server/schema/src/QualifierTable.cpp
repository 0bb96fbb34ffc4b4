#include "QualifierTable.h"

#include "Names.h"

#include <Pegasus/Common/CIMValue.h>

PEGASUS_USING_PEGASUS;

namespace vexa::schema::detail {

namespace {

// The standard qualifiers with their types, scopes and default flavors.
// A default flavor of ToSubclass + EnableOverride applies unless a
// qualifier is restricted to the element it is written on, or may not be
// changed by a subclass.
struct StandardQualifier {
    const char* name;
    CIMType type;
    bool isArray;
    enum {
        Classes,
        Associations,
        Indications,
        Properties,
        References,
        Methods,
        Parameters,
        Features,
        Values,
        Any
    } scope;
    enum { Inherited, Fixed, Restricted } flavor;
    bool translatable;
};

CIMScope scopeOf(int scope) {
    CIMScope classes = CIMScope::CLASS + CIMScope::ASSOCIATION + CIMScope::INDICATION;
    switch (scope) {
    case StandardQualifier::Classes:
        return classes;
    case StandardQualifier::Associations:
        return CIMScope::ASSOCIATION;
    case StandardQualifier::Indications:
        return CIMScope::CLASS + CIMScope::INDICATION;
    case StandardQualifier::Properties:
        return CIMScope::PROPERTY;
    case StandardQualifier::References:
        return CIMScope::REFERENCE;
    case StandardQualifier::Methods:
        return CIMScope::METHOD;
    case StandardQualifier::Parameters:
        return CIMScope::PARAMETER;
    case StandardQualifier::Features:
        return CIMScope::PROPERTY + CIMScope::REFERENCE + CIMScope::METHOD;
    case StandardQualifier::Values:
        return CIMScope::PROPERTY + CIMScope::METHOD + CIMScope::PARAMETER;
    default:
        return CIMScope::ANY;
    }
}

CIMFlavor flavorOf(int flavor, bool translatable) {
    CIMFlavor result;
    switch (flavor) {
    case StandardQualifier::Fixed:
        result = CIMFlavor::TOSUBCLASS + CIMFlavor::DISABLEOVERRIDE;
        break;
    case StandardQualifier::Restricted:
        result = CIMFlavor::RESTRICTED + CIMFlavor::ENABLEOVERRIDE;
        break;
    default:
        result = CIMFlavor::TOSUBCLASS + CIMFlavor::ENABLEOVERRIDE;
        break;
    }
    if (translatable) {
        result.addFlavor(CIMFlavor::TRANSLATABLE);
    }
    return result;
}

CIMValue defaultValue(CIMType type, bool isArray, const char* name) {
    if (type == CIMTYPE_BOOLEAN && !isArray) {
        // A boolean qualifier written without a value means true; In is
        // true even when not written at all.
        return CIMValue(static_cast<Boolean>(foldCase(std::string(name)) == "in"));
    }
    return CIMValue(type, isArray);
}

using Q = StandardQualifier;

const StandardQualifier standardQualifiers[] = {
    {"Abstract", CIMTYPE_BOOLEAN, false, Q::Classes, Q::Restricted, false},
    {"Aggregate", CIMTYPE_BOOLEAN, false, Q::References, Q::Fixed, false},
    {"Aggregation", CIMTYPE_BOOLEAN, false, Q::Associations, Q::Fixed, false},
    {"ArrayType", CIMTYPE_STRING, false, Q::Values, Q::Fixed, false},
    {"Association", CIMTYPE_BOOLEAN, false, Q::Associations, Q::Fixed, false},
    {"BitMap", CIMTYPE_STRING, true, Q::Values, Q::Inherited, false},
    {"BitValues", CIMTYPE_STRING, true, Q::Values, Q::Inherited, true},
    {"ClassConstraint", CIMTYPE_STRING, true, Q::Classes, Q::Inherited, false},
    {"Composition", CIMTYPE_BOOLEAN, false, Q::Associations, Q::Fixed, false},
    {"Correlatable", CIMTYPE_STRING, true, Q::Properties, Q::Inherited, false},
    {"Counter", CIMTYPE_BOOLEAN, false, Q::Values, Q::Inherited, false},
    {"Delete", CIMTYPE_BOOLEAN, false, Q::Associations, Q::Inherited, false},
    {"Deprecated", CIMTYPE_STRING, true, Q::Any, Q::Restricted, false},
    {"Description", CIMTYPE_STRING, false, Q::Any, Q::Inherited, true},
    {"DisplayDescription", CIMTYPE_STRING, false, Q::Any, Q::Inherited, true},
    {"DisplayName", CIMTYPE_STRING, false, Q::Any, Q::Inherited, true},
    {"DN", CIMTYPE_BOOLEAN, false, Q::Values, Q::Fixed, false},
    {"EmbeddedInstance", CIMTYPE_STRING, false, Q::Values, Q::Fixed, false},
    {"EmbeddedObject", CIMTYPE_BOOLEAN, false, Q::Values, Q::Fixed, false},
    {"Exception", CIMTYPE_BOOLEAN, false, Q::Indications, Q::Fixed, false},
    {"Experimental", CIMTYPE_BOOLEAN, false, Q::Any, Q::Restricted, false},
    {"Expensive", CIMTYPE_BOOLEAN, false, Q::Any, Q::Inherited, false},
    {"Gauge", CIMTYPE_BOOLEAN, false, Q::Values, Q::Inherited, false},
    {"Ifdeleted", CIMTYPE_BOOLEAN, false, Q::Associations, Q::Inherited, false},
    {"Indication", CIMTYPE_BOOLEAN, false, Q::Indications, Q::Fixed, false},
    {"In", CIMTYPE_BOOLEAN, false, Q::Parameters, Q::Fixed, false},
    {"Invisible", CIMTYPE_BOOLEAN, false, Q::Any, Q::Inherited, false},
    {"IsPUnit", CIMTYPE_BOOLEAN, false, Q::Values, Q::Inherited, false},
    {"Key", CIMTYPE_BOOLEAN, false, Q::Features, Q::Fixed, false},
    {"Large", CIMTYPE_BOOLEAN, false, Q::Any, Q::Inherited, false},
    {"MappingStrings", CIMTYPE_STRING, true, Q::Any, Q::Inherited, false},
    {"Max", CIMTYPE_UINT32, false, Q::References, Q::Inherited, false},
    {"MaxLen", CIMTYPE_UINT32, false, Q::Values, Q::Inherited, false},
    {"MaxValue", CIMTYPE_SINT64, false, Q::Values, Q::Inherited, false},
    {"MethodConstraint", CIMTYPE_STRING, true, Q::Methods, Q::Inherited, false},
    {"Min", CIMTYPE_UINT32, false, Q::References, Q::Inherited, false},
    {"MinLen", CIMTYPE_UINT32, false, Q::Values, Q::Inherited, false},
    {"MinValue", CIMTYPE_SINT64, false, Q::Values, Q::Inherited, false},
    {"ModelCorrespondence", CIMTYPE_STRING, true, Q::Any, Q::Inherited, false},
    {"NonLocal", CIMTYPE_STRING, false, Q::References, Q::Inherited, false},
    {"NonLocalType", CIMTYPE_STRING, false, Q::References, Q::Inherited, false},
    {"NullValue", CIMTYPE_STRING, false, Q::Properties, Q::Fixed, false},
    {"OctetString", CIMTYPE_BOOLEAN, false, Q::Values, Q::Fixed, false},
    {"Out", CIMTYPE_BOOLEAN, false, Q::Parameters, Q::Fixed, false},
    {"Override", CIMTYPE_STRING, false, Q::Features, Q::Restricted, false},
    {"Propagated", CIMTYPE_STRING, false, Q::Properties, Q::Fixed, false},
    {"PropertyConstraint", CIMTYPE_STRING, true, Q::Features, Q::Inherited, false},
    {"PropertyUsage", CIMTYPE_STRING, false, Q::Properties, Q::Inherited, false},
    {"Provider", CIMTYPE_STRING, false, Q::Any, Q::Inherited, false},
    {"PUnit", CIMTYPE_STRING, false, Q::Values, Q::Inherited, false},
    {"Read", CIMTYPE_BOOLEAN, false, Q::Properties, Q::Inherited, false},
    {"Required", CIMTYPE_BOOLEAN, false, Q::Any, Q::Fixed, false},
    {"Revision", CIMTYPE_STRING, false, Q::Classes, Q::Inherited, true},
    {"Schema", CIMTYPE_STRING, false, Q::Features, Q::Fixed, true},
    {"Static", CIMTYPE_BOOLEAN, false, Q::Features, Q::Fixed, false},
    {"Terminal", CIMTYPE_BOOLEAN, false, Q::Classes, Q::Inherited, false},
    {"UMLPackagePath", CIMTYPE_STRING, false, Q::Classes, Q::Inherited, false},
    {"Units", CIMTYPE_STRING, false, Q::Values, Q::Inherited, true},
    {"ValueMap", CIMTYPE_STRING, true, Q::Values, Q::Inherited, false},
    {"Values", CIMTYPE_STRING, true, Q::Values, Q::Inherited, true},
    {"Version", CIMTYPE_STRING, false, Q::Classes, Q::Restricted, true},
    {"Weak", CIMTYPE_BOOLEAN, false, Q::References, Q::Fixed, false},
    {"Write", CIMTYPE_BOOLEAN, false, Q::Properties, Q::Inherited, false},
};

} // namespace

QualifierTable::QualifierTable() {
    for (const StandardQualifier& q : standardQualifiers) {
        declare(CIMQualifierDecl(CIMName(q.name), defaultValue(q.type, q.isArray, q.name),
                                 scopeOf(q.scope), flavorOf(q.flavor, q.translatable)));
    }
}

const CIMQualifierDecl* QualifierTable::find(const std::string& name) const {
    auto found = declarations_.find(foldCase(name));
    return found == declarations_.end() ? nullptr : &found->second;
}

void QualifierTable::declare(const CIMQualifierDecl& declaration) {
    declarations_[foldCase(declaration.getName())] = declaration;
}

} // namespace vexa::schema::detail
