// The provider interfaces are abstract, but their constructors and
// destructors are defined here so that the vtables and type information the
// server's dynamic_casts depend on exist exactly once, in this library.
#ifndef PEGASUS_PROVIDER_INTERNAL
#define PEGASUS_PROVIDER_INTERNAL
#endif

#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMIndicationConsumerProvider.h>
#include <Pegasus/Provider/CIMIndicationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMMethodProvider.h>
#include <Pegasus/Provider/CIMProvider.h>

PEGASUS_NAMESPACE_BEGIN

CIMProvider::CIMProvider() {}
CIMProvider::~CIMProvider() {}

CIMInstanceProvider::CIMInstanceProvider() {}
CIMInstanceProvider::~CIMInstanceProvider() {}

CIMAssociationProvider::CIMAssociationProvider() {}
CIMAssociationProvider::~CIMAssociationProvider() {}

CIMIndicationProvider::CIMIndicationProvider() {}
CIMIndicationProvider::~CIMIndicationProvider() {}

CIMMethodProvider::CIMMethodProvider() {}
CIMMethodProvider::~CIMMethodProvider() {}

CIMIndicationConsumerProvider::CIMIndicationConsumerProvider() {}
CIMIndicationConsumerProvider::~CIMIndicationConsumerProvider() {}

PEGASUS_NAMESPACE_END
