// The configuration-service methods with arbitrary in-parameters, called as
// a CIM server calls them on a running provider: names from the methods'
// own vocabulary or any text, values of every type the wire can carry, and
// references to real and made-up elements. Every call must end with exactly
// one Uint32 return value and one complete(), never with an exception.
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/OperationContext.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <qzsim/SimControl.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <vector>

#include "recordingHandlers.h"
#include "startedProvider.h"

PEGASUS_USING_PEGASUS;

namespace {

const char* const METHODS[] = {"ModifyNode",
                               "CreateFileset",
                               "DeleteFileset",
                               "EditFileset",
                               "EditQuota",
                               "LinkFileset",
                               "UnlinkFileset",
                               "ChangeOwnerAndOrGroup",
                               "ChangeFilesetJnxnOwnership",
                               "ChangeFilesetJnxnACL",
                               "ModifyCorvanePhysicalDisk",
                               "ModifyCorvaneVirtualDisk",
                               "ModifyCorvaneDeclusteredArray"};

const char* const PARAMETERS[] = {"vexaFileSystem",
                                  "vexaFileset",
                                  "vexaFileSystemName",
                                  "vexaFilesetName",
                                  "vexaFilesetComment",
                                  "vexaFilesetID",
                                  "vexaJunctionPath",
                                  "vexaFsetNameOrJnxnPath",
                                  "vexaFilesetNameOrJunctionPath",
                                  "vexaFilesetPath",
                                  "vexaSourceFileset",
                                  "vexaTargetFileset",
                                  "vexaSourceFileSetID",
                                  "vexaTargetFileSetID",
                                  "vexaSourceFileSystemName",
                                  "vexaTargetFileSystemName",
                                  "vexaFileSetName",
                                  "entityType",
                                  "entityId",
                                  "newBlockSoftLimitKB",
                                  "newBlockHardLimitKB",
                                  "newFileSoftLimit",
                                  "newFileHardLimit",
                                  "owner",
                                  "group",
                                  "path",
                                  "isFilesetJunction",
                                  "name",
                                  "status",
                                  "pagePool",
                                  "maxMbps"};

// Elements of the demo cluster that methods name by reference.
const char* const REFERENCED_CLASSES[] = {"KOR_VEXA_FileSystem", "KOR_VEXA_Fileset",
                                          "KOR_VEXA_Node", "KOR_VEXA_Cluster",
                                          "DALEN_PhysicalDisk"};

// Methods add filesets and jobs; a fresh model now and then keeps each run
// close to the demo cluster.
const unsigned RUNS_PER_MODEL = 512;

std::vector<CIMObjectPath> knownPaths;

String text(FuzzedDataProvider& input, size_t longest) {
    const std::string bytes = input.ConsumeRandomLengthString(longest);
    try {
        return String(bytes.c_str(), Uint32(bytes.size()));
    } catch (const Exception&) {
        return String("x"); // not UTF-8: no client can send it
    }
}

CIMValue value(FuzzedDataProvider& input) {
    switch (input.ConsumeIntegralInRange(0, 10)) {
    case 0:
        return CIMValue(text(input, 400));
    case 1:
        return CIMValue(input.ConsumeIntegral<Uint64>());
    case 2:
        return CIMValue(Boolean(input.ConsumeBool()));
    case 3:
        if (!knownPaths.empty())
            return CIMValue(
                knownPaths[input.ConsumeIntegralInRange<size_t>(0, knownPaths.size() - 1)]);
        return CIMValue(CIMObjectPath());
    case 4:
        try {
            return CIMValue(CIMObjectPath(text(input, 300)));
        } catch (const Exception&) {
            return CIMValue(CIMObjectPath());
        }
    case 5:
        return CIMValue(input.ConsumeIntegral<Uint32>());
    case 6:
        return CIMValue(input.ConsumeIntegral<Sint32>());
    case 7:
        return CIMValue(CIMTYPE_STRING, false);
    case 8: {
        Array<String> texts;
        for (int n = input.ConsumeIntegralInRange(0, 3); n > 0; n--)
            texts.append(text(input, 40));
        return CIMValue(texts);
    }
    case 9:
        return CIMValue(CIMTYPE_REFERENCE, false);
    default:
        return CIMValue(input.ConsumeIntegral<Uint16>());
    }
}

void freshModel(VexaProvider& provider) {
    qzsim::loadModelFromString(qzsim::demoModelJson());
    provider.refreshForced = true;
    RecordingInstanceHandler handler;
    provider.enumerateInstances(
        OperationContext(),
        CIMObjectPath(String(), CIMNamespaceName("root/cimv2"), CIMName("KOR_VEXA_Cluster")), false,
        false, CIMPropertyList(), handler);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    VexaProvider& provider = startedProvider();
    for (const char* className : REFERENCED_CLASSES) {
        RecordingPathHandler handler;
        provider.enumerateInstanceNames(
            OperationContext(),
            CIMObjectPath(String(), CIMNamespaceName("root/cimv2"), CIMName(className)), handler);
        for (Uint32 i = 0; i < handler.paths.size(); i++)
            knownPaths.push_back(handler.paths[i]);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static unsigned runs = 0;
    VexaProvider& provider = startedProvider();
    if (++runs % RUNS_PER_MODEL == 0)
        freshModel(provider);

    FuzzedDataProvider input(data, size);
    const String className = input.ConsumeIntegralInRange(0, 15) == 0
                                 ? text(input, 60)
                                 : String("KOR_VEXA_ClusterConfigurationService");
    const size_t pick = input.ConsumeIntegralInRange<size_t>(0, std::size(METHODS));
    const String methodName = pick < std::size(METHODS) ? String(METHODS[pick]) : text(input, 40);
    Array<CIMParamValue> in;
    for (int n = input.ConsumeIntegralInRange(0, 6); n > 0; n--) {
        const size_t name = input.ConsumeIntegralInRange<size_t>(0, std::size(PARAMETERS));
        const String parameterName =
            name < std::size(PARAMETERS) ? String(PARAMETERS[name]) : text(input, 40);
        if (!CIMName::legal(parameterName))
            continue;
        in.append(CIMParamValue(parameterName, value(input)));
    }
    if (!CIMName::legal(className) || !CIMName::legal(methodName))
        return 0; // the server refuses such names before any provider sees them

    RecordingMethodHandler handler;
    provider.invokeMethod(
        OperationContext(),
        CIMObjectPath(String(), CIMNamespaceName("root/cimv2"), CIMName(className)),
        CIMName(methodName), in, handler);
    const size_t answers = handler.order.size();
    Uint32 rc = 0;
    if (answers < 3 || handler.order.front() != "processing" ||
        handler.order.back() != "complete" || handler.order[answers - 2] != "value" ||
        handler.returnValues[handler.returnValues.size() - 1].getType() != CIMTYPE_UINT32) {
        std::fprintf(stderr, "the call did not end with one Uint32 and complete()\n");
        std::abort();
    }
    handler.returnValues[handler.returnValues.size() - 1].get(rc);
    return 0;
}
