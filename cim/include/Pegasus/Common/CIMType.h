// The CIM data types a value or property can have.
#ifndef Pegasus_CIMType_h
#define Pegasus_CIMType_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

enum CIMType {
    CIMTYPE_BOOLEAN,
    CIMTYPE_UINT8,
    CIMTYPE_SINT8,
    CIMTYPE_UINT16,
    CIMTYPE_SINT16,
    CIMTYPE_UINT32,
    CIMTYPE_SINT32,
    CIMTYPE_UINT64,
    CIMTYPE_SINT64,
    CIMTYPE_REAL32,
    CIMTYPE_REAL64,
    CIMTYPE_CHAR16,
    CIMTYPE_STRING,
    CIMTYPE_DATETIME,
    CIMTYPE_REFERENCE,
    CIMTYPE_OBJECT,
    CIMTYPE_INSTANCE
};

PEGASUS_COMMON_LINKAGE const char* cimTypeToString(const CIMType type);

PEGASUS_NAMESPACE_END

#endif
