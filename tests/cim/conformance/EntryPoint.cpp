// The symbol a CIM server looks up after loading the library.
#include "ConformanceProvider.h"

#include <Pegasus/Common/String.h>

extern "C" PEGASUS_EXPORT CIMProvider* PegasusCreateProvider(const String& providerName) {
    if (String::equalNoCase(providerName, "ConformanceProvider")) {
        return new ConformanceProvider();
    }
    return 0;
}
