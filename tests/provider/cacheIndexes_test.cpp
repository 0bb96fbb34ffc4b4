// The look-up indexes answer exactly what a walk over the array answers: the
// walks below are the reference, run on randomised clusters with duplicates
// and case variants appended, and again after the cache changed.
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <random>
#include <string>

#include "instanceByPath.h"
#include "lockGuards.h"
#include "readModelSupport.h"

using namespace Pegasus;

namespace {

typedef Array<CIMInstance> VexaProvider::*List;

int walkByKey(const Array<CIMInstance>& list, const char* property, const String& key) {
    for (Uint32 i = 0; i < list.size(); i++) {
        Uint32 at = list[i].findProperty(CIMName(property));
        if (at != PEG_NOT_FOUND && list[i].getProperty(at).getValue().toString() == key)
            return static_cast<int>(i);
    }
    return -1;
}

int walkByPath(const Array<CIMInstance>& list, const CIMObjectPath& path) {
    for (Uint32 i = 0; i < list.size(); i++)
        if (list[i].getPath() == path)
            return static_cast<int>(i);
    return -1;
}

// Paths of the associations with an end identical to path (under role).
std::string walkByEnd(const Array<CIMInstance>& list, const CIMObjectPath& path,
                      const String& role) {
    std::string found;
    for (Uint32 i = 0; i < list.size(); i++)
        for (Uint32 p = 0; p < list[i].getPropertyCount(); p++) {
            CIMConstProperty property = list[i].getProperty(p);
            CIMObjectPath end;
            if (property.getType() != CIMTYPE_REFERENCE ||
                (role.size() && !String::equalNoCase(role, property.getName().getString())))
                continue;
            property.getValue().get(end);
            if (end == path) {
                found += (const char*)list[i].getPath().toString().getCString();
                break;
            }
        }
    return found;
}

std::string randomCluster(unsigned seed) {
    std::mt19937 random(seed);
    const int nodes = 3 + random() % 6, disks = 2 + random() % 6;
    std::string json = R"({"cluster": {"clusterName": "c", "primaryServer": "n0"}, "nodes": [)";
    for (int n = 0; n < nodes; n++) {
        // Names differing only in case: the look-ups must keep them apart.
        std::string name = (n % 3 == 2) ? "N" + std::to_string(n - 1) : "n" + std::to_string(n);
        json += std::string(n ? "," : "") + R"({"name": ")" + name + R"(", "ipAddr": "10.0.0.)" +
                std::to_string(n) + R"(", "diskAccess": [{"diskName": "d)" +
                std::to_string(random() % disks) + R"(", "localAccess": true}]})";
    }
    json += R"(], "filesystems": [{"name": "fs", "mountedNodes": ["n0", "n1"], "pools": [)";
    json += R"({"name": "p", "disks": [)";
    for (int d = 0; d < disks; d++)
        json += std::string(d ? "," : "") + R"({"name": "d)" + std::to_string(d) +
                R"(", "servers": ["n)" + std::to_string(random() % 2) + R"("]})";
    json += R"(]}], "filesets": [{"name": "a", "id": 1}, {"name": "A", "id": 2}]}]})";
    return json;
}

class CacheIndexesTest : public ReadModelTest {
protected:
    // Every key, path and association end of the cache looked up both ways.
    void expectAgreement() {
        CacheReadLock lock(*provider);
        const struct {
            VexaProvider::VexaInstanceType type;
            List list;
            const char* key;
        } keys[] = {
            {VexaProvider::VEXA_INST_CLUSTER, &VexaProvider::clusters, "vexaClusterName"},
            {VexaProvider::VEXA_INST_NODE_BY_NAME, &VexaProvider::nodes, "vexaNodeName"},
            {VexaProvider::VEXA_INST_NODE_BY_IP, &VexaProvider::nodes, "vexaNodeIP"},
            {VexaProvider::VEXA_INST_FILESYSTEM, &VexaProvider::fileSystems, "vexaFileSystemName"},
            {VexaProvider::VEXA_INST_STORAGE_POOL, &VexaProvider::storagePools, "vexaStgPoolName"},
            {VexaProvider::VEXA_INST_DISK, &VexaProvider::disks, "vexaDiskName"}};
        for (const auto& k : keys)
            for (const char* name : {"n0", "N0", "n1", "10.0.0.1", "d1", "fs", "fs+p", "c", "x"})
                EXPECT_EQ(provider->findVexaInstIdx(k.type, const_cast<char*>(name)),
                          walkByKey(provider->*k.list, k.key, name));
        for (const char* name : {"pd1", "PD1", "pd2"})
            EXPECT_EQ(provider->getCorvaneInstIdx(VexaProvider::CORVANE_INST_PHYSICAL_DISK, name),
                      walkByKey(provider->raidPhysicalDisks, "DeviceID", name));

        const List lists[] = {&VexaProvider::nodes, &VexaProvider::disks, &VexaProvider::filesets,
                              &VexaProvider::clusters, &VexaProvider::fileSystems};
        const List assocs[] = {&VexaProvider::nodeAccessesNsds, &VexaProvider::nodeServingNsds,
                               &VexaProvider::mounteds, &VexaProvider::associatedFilesets};
        // Const views: a non-const element access would detach the array
        // from its index and send every look-up down the walk.
        const VexaProvider& cache = *provider;
        for (List list : lists) {
            const Array<CIMInstance>& items = cache.*list;
            // Released by a writer, so every index is fresh and in use.
            EXPECT_NE(provider->usableIndex(items, ArrayIndex::ByPath), nullptr);
            for (Uint32 i = 0; i < items.size(); i++) {
                CIMObjectPath path = items[i].getPath();
                EXPECT_EQ(firstWithPath(*provider, items, path), walkByPath(items, path));
                const String name = items[i].getPath().getClassName().getString();
                path.setClassName(CIMName(name.subString(0, 4) + "vexa_" + name.subString(9)));
                EXPECT_EQ(firstWithPath(*provider, items, path), walkByPath(items, path));
                for (List assoc : assocs) {
                    const Array<CIMInstance>& links = cache.*assoc;
                    EXPECT_NE(provider->usableIndex(links, ArrayIndex::ByReference), nullptr);
                    for (const char* role : {"", "ANTECEDENT", "dependent", "x"}) {
                        Array<CIMInstance> kept = provider->filterAssociationInstancesByRole(
                            links, items[i].getPath(), role);
                        std::string got;
                        for (Uint32 a = 0; a < kept.size(); a++)
                            got += (const char*)kept[a].getPath().toString().getCString();
                        EXPECT_EQ(got, walkByEnd(links, items[i].getPath(), role));
                    }
                }
            }
        }
    }
    // A bare instance whose one property is a look-up key.
    static CIMInstance keyed(const char* className, const char* property, const char* value) {
        CIMInstance instance{CIMName(className)};
        instance.addProperty(CIMProperty(CIMName(property), CIMValue(String(value))));
        return instance;
    }
};

TEST_F(CacheIndexesTest, LookupsAgreeWithTheWalkOnRandomClustersAndAfterChanges) {
    for (unsigned seed = 1; seed <= 6; seed++) {
        SCOPED_TRACE(seed);
        // Half the clusters have their indexes rebuilt by two threads, as a
        // large cluster's are.
        if (seed % 2)
            provider->cacheIndexes.setSecondThreadMinimum(0);
        start(randomCluster(seed));
        {
            CacheWriteLock lock(*provider);
            // Duplicates after the originals; the first must keep winning.
            provider->nodes.append(keyed("KOR_VEXA_Node", "vexaNodeName", "n0"));
            provider->disks.append(provider->disks[0]);
            provider->filesets.append(provider->filesets[1]);
            for (const char* id : {"pd1", "PD1", "pd1"})
                provider->raidPhysicalDisks.append(keyed("DALEN_PhysicalDisk", "DeviceID", id));
            // A look-up in the middle of a change sees the change.
            char* n0 = const_cast<char*>("n0");
            EXPECT_EQ(provider->findVexaInstIdx(VexaProvider::VEXA_INST_NODE_BY_NAME, n0), 0);
            provider->nodes.remove(0);
        }
        expectAgreement();
        {
            CacheWriteLock lock(*provider);
            provider->deleteFilesetFromInstanceList("fs", "a");
            provider->raidPhysicalDisks[0] = keyed("DALEN_PhysicalDisk", "DeviceID", "pd2");
            provider->disks.clear();
        }
        expectAgreement();
        stopEventThread();
        provider->cleanupVexaHandler();
        delete provider;
        qzsim::reset();
        provider = new VexaProvider();
    }
}

} // namespace
