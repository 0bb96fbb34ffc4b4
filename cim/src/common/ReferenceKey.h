// Internal: reference keys made straight from paths.
//
// A reference key holds the text of the path it names, in the form that
// reading the text as a path and writing it again gives; setting a path's
// keys brings every reference key into that form. Done by reading each text
// again, that made building many associations slow, so a key made from a
// path whose text is known to be in that form already says so, and is taken
// as it stands. The path keeps its text once made, and every key made from
// it shares that one copy.
#ifndef Pegasus_ReferenceKey_h
#define Pegasus_ReferenceKey_h

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Config.h>

PEGASUS_NAMESPACE_BEGIN

class CIMKeyBindingRep {
public:
    CIMName name;
    String value;
    CIMKeyBinding::Type type = CIMKeyBinding::STRING;
    // True only for a reference key made from a path whose text reads back
    // unchanged; any change to the value or the type clears it.
    Boolean canonicalReference = false;
};

// The path's text, as toString() gives it, and whether reading it as a path
// and writing it again gives the same text.
PEGASUS_HIDDEN_LINKAGE String referenceText(const CIMObjectPath& path, Boolean& canonical);

PEGASUS_NAMESPACE_END

#endif
