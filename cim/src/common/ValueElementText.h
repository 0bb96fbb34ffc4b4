// Internal: the text of each element of a CIMValue, as CIMValue::toString()
// writes it, for code that lays the elements out differently (the XML
// rendering of objects).
#ifndef Pegasus_ValueElementText_h
#define Pegasus_ValueElementText_h

#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Config.h>
#include <vector>

PEGASUS_NAMESPACE_BEGIN

// One entry per element (one for a scalar); none for a null value.
PEGASUS_HIDDEN_LINKAGE std::vector<String> valueElementTexts(const CIMValue& value);

PEGASUS_NAMESPACE_END

#endif
