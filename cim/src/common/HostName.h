// Internal: which host parts an object path accepts. A host is a DNS-style
// name, an IPv4 address or a bracketed IPv6 address, each with an optional
// ":port" (an empty port counts as none). Link-local IPv6 addresses need
// their "%interface".
#ifndef Pegasus_HostName_h
#define Pegasus_HostName_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

PEGASUS_HIDDEN_LINKAGE bool isValidHostName(const String& host);

PEGASUS_NAMESPACE_END

#endif
