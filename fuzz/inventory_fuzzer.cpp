// The three declustered-RAID inventory parsers on arbitrary file content:
// whatever the file holds, parsing ends, and every element it yields has a
// path that reads back as itself from its text form, since clients send
// those paths back to name the element.
#include <Pegasus/Common/CIMObjectPath.h>

#include <qzsim/SimControl.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "cimProvider.h"

PEGASUS_USING_PEGASUS;

namespace {

void checkPaths(const Array<CIMInstance>& elements) {
    for (Uint32 i = 0; i < elements.size(); i++) {
        const CIMObjectPath& path = elements[i].getPath();
        if (!(CIMObjectPath(path.toString()) == path)) {
            std::fprintf(stderr, "element path does not read back: %s\n",
                         (const char*)path.toString().getCString());
            std::abort();
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setenv("QZSIM_LOG_FILE", "/dev/null", 1);
    qzsim::setLogLevel(1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    VexaProvider provider;
    int (VexaProvider::*const parsers[])(FILE*) = {
        &VexaProvider::createCorvanePhysicalDiskInstanceFromFile,
        &VexaProvider::createCorvaneVirtualDiskInstanceFromFile,
        &VexaProvider::createCorvaneDeclusteredArrayInstanceFromFile};
    for (auto parse : parsers) {
        // fmemopen refuses an empty buffer; an empty file is a valid input.
        FILE* file = size == 0 ? std::fopen("/dev/null", "r")
                               : fmemopen(const_cast<uint8_t*>(data), size, "r");
        if (file == nullptr) {
            std::abort();
        }
        (provider.*parse)(file);
        std::fclose(file);
    }
    checkPaths(provider.raidPhysicalDisks);
    checkPaths(provider.raidVirtualDisks);
    checkPaths(provider.raidDeclusteredArrays);
    return 0;
}
