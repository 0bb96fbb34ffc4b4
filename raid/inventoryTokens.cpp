// Tokens and values of the declustered-RAID inventory files. The files come
// from another component of the storage system; nothing here trusts their
// content beyond the NUL-terminated line piece the parser hands over.
#include "cimProvider.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>

#include <qzantras/ts_log.h>

#include <cstring>

#include "inventoryPlace.h"

PEGASUS_USING_PEGASUS;

namespace {

// Only the blank separates tokens: the files indent with it, and a tab is
// part of the token it touches.
const char* const TOKEN_SEPARATORS = " ";

const char* printable(const char* token) { return token != 0 ? token : "(null)"; }

// The files write every value as "text"; followed by the newline, so the
// first character and the last three are the quotes, the semicolon and the
// newline. A token shorter than four keeps everything after its first
// character, which is what the CIM string's substring gives for a count that
// runs past the end.
String cutValue(const String& token) {
    const Uint32 size = token.size();
    return size >= 4 ? token.subString(1, size - 4) : token.subString(1);
}

} // namespace

char* VexaProvider::getNextToken(char* line, char** savePointer) {
    char* token;
    if (*savePointer == 0) {
        token = strtok_r(line, TOKEN_SEPARATORS, savePointer);
        ts_log(0, "VexaProvider::getNextToken", "savePP is Null, tok = %s\n", printable(token));
    } else {
        token = strtok_r(0, TOKEN_SEPARATORS, savePointer);
        ts_log(0, "VexaProvider::getNextToken", "savePP is not Null, tok = %s\n", printable(token));
    }
    return token;
}

// A line without a value, or with a value that is not UTF-8 text, adds
// nothing: the property is left out of the record and the empty text is
// returned, so that a key is not quietly taken over from the previous record.
String VexaProvider::setCorvaneInstanceProperty(char** line, char** savePointer,
                                                CIMInstance* instance, char* name) {
    static const char* const fn = "VexaProvider::setCorvaneInstanceProperty";
    // The token after the name is the file's "=".
    getNextToken(*line, savePointer);
    const char* token = getNextToken(*line, savePointer);
    if (token == 0) {
        ts_log(1, fn, "%s%s has no value; property left out\n",
               raid::describeInventoryPlace().c_str(), name);
        return String();
    }
    String value;
    try {
        value = cutValue(String(token));
    } catch (const Exception&) {
        ts_log(1, fn, "%svalue of %s is not UTF-8 text; property left out\n",
               raid::describeInventoryPlace().c_str(), name);
        return String();
    }
    ts_log(0, fn, "name = %s, value = %s\n", name, (const char*)value.getCString());

    // A name given twice in one record: the later line wins, as a reader of
    // the file would expect.
    const CIMName propertyName(name);
    const Uint32 existing = instance->findProperty(propertyName);
    if (existing != PEG_NOT_FOUND) {
        instance->removeProperty(existing);
    }
    instance->addProperty(CIMProperty(propertyName, CIMValue(value)));
    return value;
}
