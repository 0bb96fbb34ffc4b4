// The library's entry points: the factory the CIM server looks up by name,
// and a signal-handler-shaped switch that lets the refresh thread end.
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMProvider.h>

#include "cimProvider.h"
#include "processFlags.h"

PEGASUS_USING_PEGASUS;

// Every call with a matching name makes a new object; the server keeps one
// per provider name and hands it back through terminate().
extern "C" PEGASUS_EXPORT CIMProvider* PegasusCreateProvider(const String& providerName) {
    if (String::equalNoCase(providerName, String("VexaProvider"))) {
        return new VexaProvider();
    }
    return 0;
}

extern "C" PEGASUS_EXPORT void stopServer(int) {
    storeFlag(KeepRunning, 0);
    VexaProvider::wakeRefreshThread();
}
