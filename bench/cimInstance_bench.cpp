// Memory and time of the CIM layer's instances, built the way the provider
// builds its largest class (a fileset with 19 properties and 7 string keys)
// and the association that ties each fileset to its file system. Uses only
// the public API, so the same program runs against the bundled layer and
// against an installed OpenPegasus:
//
//   bench_cim_instances [count]
//
// Prints heap bytes per fileset and per association (mallinfo2, so malloc's
// own overhead included), then nanoseconds per instance for building,
// copying the handles, cloning, writing the path as text, finding properties
// by name and converting every string value to UTF-8.
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/String.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <string>
#include <vector>

PEGASUS_USING_PEGASUS;

namespace {

const CIMName FILESET_CLASS("KOR_VEXA_Fileset");
const CIMName FILESYSTEM_CLASS("KOR_VEXA_FileSystem");
const CIMName ASSOCIATION_CLASS("KOR_VEXA_AssociatedFileset");
const CIMNamespaceName NAMESPACE("root/vexa");

void add(CIMInstance& instance, const char* name, const CIMValue& value) {
    instance.addProperty(CIMProperty(CIMName(name), value));
}

void add(CIMInstance& instance, const char* name, const char* text) {
    add(instance, name, CIMValue(String(text)));
}

void key(Array<CIMKeyBinding>& keys, const char* name, const char* value) {
    keys.append(CIMKeyBinding(CIMName(name), String(value), CIMKeyBinding::STRING));
}

void setPath(CIMInstance& instance, const CIMName& className, const Array<CIMKeyBinding>& keys) {
    CIMObjectPath path(String(), CIMNamespaceName(), className, keys);
    path.setNameSpace(NAMESPACE);
    instance.setPath(path);
}

CIMInstance buildFileset(int i) {
    char fsName[32];
    char name[32];
    char id[32];
    char path[64];
    std::snprintf(fsName, sizeof(fsName), "fs%d", i % 16);
    std::snprintf(name, sizeof(name), "fileset%05d", i);
    std::snprintf(id, sizeof(id), "%d", i);
    std::snprintf(path, sizeof(path), "/vexa/fs%d/fileset%05d", i % 16, i);
    const char* cluster = "cluster1.example.com";
    CIMInstance instance(FILESET_CLASS);
    add(instance, "CSCreationClassName", "KOR_VEXA_Cluster");
    add(instance, "CSName", cluster);
    add(instance, "FSCreationClassName", "KOR_VEXA_FileSystem");
    add(instance, "FSName", fsName);
    add(instance, "CreationClassName", "KOR_VEXA_Fileset");
    add(instance, "Name", name);
    add(instance, "vexaFilesetClusterName", cluster);
    add(instance, "vexaFilesetVersion", CIMValue(Uint32(3)));
    add(instance, "vexaFilesetName", name);
    add(instance, "vexaFilesetID", id);
    add(instance, "vexaFilesetRootINode", "3");
    add(instance, "vexaFilesetParentID", "0");
    add(instance, "vexaFilesetINodes", CIMValue(Uint64(100000 + i)));
    add(instance, "vexaFilesetDataInKB", CIMValue(Uint64(4096 * i)));
    add(instance, "vexaFilesetComment", CIMValue(CIMTYPE_STRING, false));
    add(instance, "vexaFilesetStatus", "Linked");
    add(instance, "vexaFileSystemName", fsName);
    add(instance, "vexaFilesetPath", path);
    add(instance, "vexaFilesetCreated", CIMValue(CIMDateTime(String("20240101120000.000000+000"))));

    Array<CIMKeyBinding> keys;
    key(keys, "CSCreationClassName", "KOR_VEXA_Cluster");
    key(keys, "CSName", cluster);
    key(keys, "FSCreationClassName", "KOR_VEXA_FileSystem");
    key(keys, "FSName", fsName);
    key(keys, "CreationClassName", "KOR_VEXA_Fileset");
    key(keys, "Name", name);
    key(keys, "ID", id);
    setPath(instance, FILESET_CLASS, keys);
    return instance;
}

CIMInstance buildAssociation(const CIMObjectPath& fileSystem, const CIMObjectPath& fileset) {
    CIMInstance association(ASSOCIATION_CLASS);
    association.addProperty(CIMProperty(CIMName("Antecedent"), CIMValue(fileSystem), 0,
                                        FILESYSTEM_CLASS, CIMName(), false));
    association.addProperty(
        CIMProperty(CIMName("Dependent"), CIMValue(fileset), 0, FILESET_CLASS, CIMName(), false));
    Array<CIMKeyBinding> keys;
    keys.append(
        CIMKeyBinding(CIMName("Antecedent"), fileSystem.toString(), CIMKeyBinding::REFERENCE));
    keys.append(CIMKeyBinding(CIMName("Dependent"), fileset.toString(), CIMKeyBinding::REFERENCE));
    setPath(association, ASSOCIATION_CLASS, keys);
    return association;
}

CIMObjectPath fileSystemPath() {
    Array<CIMKeyBinding> keys;
    key(keys, "CSCreationClassName", "KOR_VEXA_Cluster");
    key(keys, "CSName", "cluster1.example.com");
    key(keys, "CreationClassName", "KOR_VEXA_FileSystem");
    key(keys, "Name", "fs1");
    CIMObjectPath path(String(), CIMNamespaceName(), FILESYSTEM_CLASS, keys);
    path.setNameSpace(NAMESPACE);
    return path;
}

std::size_t heapInUse() {
    struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

using Clock = std::chrono::steady_clock;

double nsPer(Clock::time_point start, std::size_t count) {
    std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    return elapsed.count() / double(count);
}

// Keeps the optimiser from dropping work whose result is otherwise unused.
volatile std::size_t sink;

} // namespace

int main(int argc, char** argv) {
    const int count = argc > 1 ? std::atoi(argv[1]) : 20000;
    if (count <= 0) {
        std::fprintf(stderr, "usage: %s [count]\n", argv[0]);
        return 2;
    }
    const std::size_t n = std::size_t(count);
    const CIMObjectPath fsPath = fileSystemPath();
    // Warm up whatever the library sets up once (interned names, statics).
    {
        CIMInstance warm = buildFileset(0);
        buildAssociation(fsPath, warm.getPath());
    }

    std::size_t before = heapInUse();
    Clock::time_point start = Clock::now();
    Array<CIMInstance> filesets;
    filesets.reserveCapacity(Uint32(n));
    for (int i = 0; i < count; i++)
        filesets.append(buildFileset(i));
    double buildNs = nsPer(start, n);
    double filesetBytes = double(heapInUse() - before) / double(n);

    before = heapInUse();
    start = Clock::now();
    Array<CIMInstance> associations;
    associations.reserveCapacity(Uint32(n));
    for (Uint32 i = 0; i < filesets.size(); i++)
        associations.append(buildAssociation(fsPath, filesets[i].getPath()));
    double associationNs = nsPer(start, n);
    double associationBytes = double(heapInUse() - before) / double(n);

    // Delivering cached instances: a handle copy each, as a response does.
    start = Clock::now();
    for (int round = 0; round < 10; round++) {
        Array<CIMInstance> delivered;
        for (Uint32 i = 0; i < filesets.size(); i++)
            delivered.append(filesets[i]);
        sink = delivered.size();
    }
    double copyNs = nsPer(start, n * 10);

    start = Clock::now();
    std::size_t cloned = 0;
    for (Uint32 i = 0; i < filesets.size(); i++)
        cloned += filesets[i].clone().getPropertyCount();
    sink = cloned;
    double cloneNs = nsPer(start, n);

    start = Clock::now();
    std::size_t textLength = 0;
    for (Uint32 i = 0; i < filesets.size(); i++)
        textLength += filesets[i].getPath().toString().size();
    sink = textLength;
    double pathTextNs = nsPer(start, n);

    const char* wanted[] = {"Name", "vexaFilesetPath", "vexaFilesetCreated", "vexafilesetid"};
    start = Clock::now();
    std::size_t found = 0;
    for (Uint32 i = 0; i < filesets.size(); i++) {
        for (const char* name : wanted)
            found += filesets[i].findProperty(CIMName(name));
    }
    sink = found;
    double findNs = nsPer(start, n * 4);

    // What an encoder does with each property: its name and value as UTF-8.
    start = Clock::now();
    std::size_t bytes = 0;
    for (Uint32 i = 0; i < filesets.size(); i++) {
        const CIMInstance& instance = filesets[i];
        for (Uint32 p = 0; p < instance.getPropertyCount(); p++) {
            CIMConstProperty property = instance.getProperty(p);
            bytes += std::string(property.getName().getString().getCString()).size();
            const CIMValue& value = property.getValue();
            if (!value.isNull())
                bytes += std::string(value.toString().getCString()).size();
        }
    }
    sink = bytes;
    double utf8Ns = nsPer(start, n);

    std::printf("instances: %d filesets, %d associations\n", count, count);
    std::printf("%-40s %12.0f\n", "fileset bytes/instance", filesetBytes);
    std::printf("%-40s %12.0f\n", "association bytes/instance", associationBytes);
    std::printf("%-40s %12.0f\n", "fileset build ns/instance", buildNs);
    std::printf("%-40s %12.0f\n", "association build ns/instance", associationNs);
    std::printf("%-40s %12.1f\n", "handle copy ns/instance", copyNs);
    std::printf("%-40s %12.0f\n", "clone ns/instance", cloneNs);
    std::printf("%-40s %12.0f\n", "path toString ns/instance", pathTextNs);
    std::printf("%-40s %12.1f\n", "findProperty(CIMName(text)) ns/lookup", findNs);
    std::printf("%-40s %12.0f\n", "names+values to UTF-8 ns/instance", utf8Ns);
    return 0;
}
