// Internal: what a CIMProperty handle points at. Classes and instances keep
// the handle itself, so they can see and change it.
#ifndef Pegasus_CIMPropertyRep_h
#define Pegasus_CIMPropertyRep_h

#include "CIMQualifierList.h"
#include "SharedRep.h"
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <atomic>
#include <memory>

PEGASUS_NAMESPACE_BEGIN

class PEGASUS_HIDDEN_LINKAGE CIMPropertyRep : public SharedRep {
public:
    // What only class properties and references usually have. Kept apart so
    // that the properties of cached instances, dozens each, carry one
    // pointer for it instead of three.
    struct Details {
        CIMName referenceClassName;
        CIMName classOrigin;
        CIMQualifierList qualifiers;
        Uint32 arraySize = 0;
        Boolean propagated = false;
    };

    CIMPropertyRep() = default;
    // A clone: same contents, new qualifier objects, not inside anything yet.
    CIMPropertyRep(const CIMPropertyRep& x)
        : SharedRep(x), containers(0), name(x.name), value(x.value) {
        if (x.details)
            details.reset(new Details{x.details->referenceClassName, x.details->classOrigin,
                                      x.details->qualifiers.clone(), x.details->arraySize,
                                      x.details->propagated});
    }

    const CIMName& referenceClassName() const {
        return details ? details->referenceClassName : noName();
    }
    const CIMName& classOrigin() const { return details ? details->classOrigin : noName(); }
    const CIMQualifierList& qualifiers() const {
        return details ? details->qualifiers : noQualifiers();
    }

    void setReferenceClassName(const CIMName& className) {
        if (details || !className.isNull())
            ownDetails().referenceClassName = className;
    }
    void setClassOrigin(const CIMName& className) {
        if (details || !className.isNull())
            ownDetails().classOrigin = className;
    }
    Uint32 arraySize() const { return details ? details->arraySize : 0; }
    Boolean propagated() const { return details ? details->propagated : false; }
    void setArraySize(Uint32 size) {
        if (details || size != 0)
            ownDetails().arraySize = size;
    }
    void setPropagated(Boolean propagated) {
        if (details || propagated)
            ownDetails().propagated = propagated;
    }
    CIMQualifierList& qualifiersToChange() { return ownDetails().qualifiers; }
    void clearQualifiers() {
        if (details)
            details->qualifiers.clear();
    }

    // The four-byte members come first, beside the reference count, so that
    // a property takes no padding.

    // How many classes or instances hold this property. A held property
    // keeps its name, since the holder relies on names being unique.
    std::atomic<Uint32> containers{0};
    CIMName name;
    CIMValue value;

private:
    static const CIMName& noName() {
        static const CIMName none;
        return none;
    }
    static const CIMQualifierList& noQualifiers() {
        static const CIMQualifierList none;
        return none;
    }
    Details& ownDetails() {
        if (!details)
            details.reset(new Details());
        return *details;
    }

    std::unique_ptr<Details> details;
};
static_assert(sizeof(CIMPropertyRep) == 32, "a property's representation fills one 32-byte block");

PEGASUS_NAMESPACE_END

#endif
