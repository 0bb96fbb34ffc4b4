// The object-path parser on arbitrary text: a malformed path may only be
// refused with MalformedObjectNameException, and a path it accepts must read
// back as itself from its own text form, since clients send back the paths
// they were given.
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

PEGASUS_USING_PEGASUS;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    String text;
    try {
        text = String(reinterpret_cast<const char*>(data), Uint32(size));
    } catch (const Exception&) {
        return 0; // not UTF-8: no client can send it as a CIM string
    }
    CIMObjectPath path;
    try {
        path.set(text);
    } catch (const MalformedObjectNameException&) {
        return 0;
    }
    const String written = path.toString();
    CIMObjectPath again;
    again.set(written);
    if (!(again == path) || again.toString() != written) {
        std::fprintf(stderr, "path does not read back as itself:\n  %s\n  %s\n",
                     (const char*)written.getCString(), (const char*)again.toString().getCString());
        std::abort();
    }
    return 0;
}
