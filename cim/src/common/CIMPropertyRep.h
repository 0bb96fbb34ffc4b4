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
        : SharedRep(x), name(x.name), value(x.value), arraySize(x.arraySize),
          referenceClassName(x.referenceClassName), classOrigin(x.classOrigin),
          propagated(x.propagated), qualifiers(x.qualifiers.clone()), containers(0) {}

    CIMName name;
    CIMValue value;
    Uint32 arraySize = 0;
    CIMName referenceClassName;
    CIMName classOrigin;
    Boolean propagated = false;
    CIMQualifierList qualifiers;
    // How many classes or instances hold this property. A held property
    // keeps its name, since the holder relies on names being unique.
    std::atomic<Uint32> containers{0};
};

PEGASUS_NAMESPACE_END

#endif
