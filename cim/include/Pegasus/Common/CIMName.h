// Validated CIM element names and namespace names. Both compare ignoring
// ASCII case but keep the spelling they were given.
#ifndef Pegasus_CIMName_h
#define Pegasus_CIMName_h

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

class PEGASUS_COMMON_LINKAGE CIMName {
public:
    CIMName();
    CIMName(const String& name);
    CIMName(const char* name);
    CIMName(const CIMName& name);

    CIMName& operator=(const CIMName& name);
    CIMName& operator=(const String& name);

    const String& getString() const;
    Boolean isNull() const;
    void clear();
    Boolean equal(const CIMName& name) const;

    static Boolean legal(const String& name);

private:
    String cimName;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMName& name1, const CIMName& name2);
PEGASUS_COMMON_LINKAGE Boolean operator!=(const CIMName& name1, const CIMName& name2);

class PEGASUS_COMMON_LINKAGE CIMNamespaceName {
public:
    CIMNamespaceName();
    CIMNamespaceName(const String& name);
    CIMNamespaceName(const char* name);
    CIMNamespaceName(const CIMNamespaceName& name);

    CIMNamespaceName& operator=(const CIMNamespaceName& name);
    CIMNamespaceName& operator=(const String& name);

    const String& getString() const;
    Boolean isNull() const;
    void clear();
    Boolean equal(const CIMNamespaceName& name) const;

    static Boolean legal(const String& name);

private:
    String cimNamespaceName;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMNamespaceName& name1,
                                          const CIMNamespaceName& name2);
PEGASUS_COMMON_LINKAGE Boolean operator!=(const CIMNamespaceName& name1,
                                          const CIMNamespaceName& name2);

PEGASUS_NAMESPACE_END

#endif
