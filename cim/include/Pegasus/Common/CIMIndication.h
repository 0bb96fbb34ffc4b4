#ifndef PEGASUS_COMMON_CIMINDICATION_H
#define PEGASUS_COMMON_CIMINDICATION_H

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/Config.h>

PEGASUS_NAMESPACE_BEGIN

typedef CIMInstance CIMIndication;

PEGASUS_NAMESPACE_END

#endif
