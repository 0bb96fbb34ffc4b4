// Internal: one shared text per distinct element name. Every instance of a
// class carries the same few dozen property and key names; holding each
// spelling once turns tens of thousands of equal texts into one, and lets
// name comparisons succeed on the first pointer test.
#ifndef Pegasus_NameTable_h
#define Pegasus_NameTable_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

// The table's copy of `name` (exact spelling, case kept), which is added
// when it is new and there is room; a name that does not fit is returned as
// given. Callers check legality first: only names reach the table.
String internName(const String& name);

// The same for a name given as `n` ASCII bytes, without building a String
// first when the table already holds it.
String internAsciiName(const char* text, Uint32 n);

PEGASUS_NAMESPACE_END

#endif
