// Internal: what a CIMProperty handle points at. Classes and instances keep
// the handle itself, so they can see and change it.
#ifndef Pegasus_CIMPropertyRep_h
#define Pegasus_CIMPropertyRep_h

#include "CIMQualifierList.h"
#include "SharedRep.h"
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <atomic>

PEGASUS_NAMESPACE_BEGIN

class PEGASUS_HIDDEN_LINKAGE CIMPropertyRep : public SharedRep {
public:
    CIMPropertyRep() = default;
    // A clone: same contents, new qualifier objects, not inside anything yet.
    CIMPropertyRep(const CIMPropertyRep& x)
        : SharedRep(x), containers(0), arraySize(x.arraySize), propagated(x.propagated),
          name(x.name), value(x.value), referenceClassName(x.referenceClassName),
          classOrigin(x.classOrigin), qualifiers(x.qualifiers.clone()) {}

    // The four-byte members come first, beside the reference count, so that
    // a property takes no padding: every cached instance holds dozens.

    // How many classes or instances hold this property. A held property
    // keeps its name, since the holder relies on names being unique.
    std::atomic<Uint32> containers{0};
    Uint32 arraySize = 0;
    Boolean propagated = false;
    CIMName name;
    CIMValue value;
    CIMName referenceClassName;
    CIMName classOrigin;
    CIMQualifierList qualifiers;
};

PEGASUS_NAMESPACE_END

#endif
