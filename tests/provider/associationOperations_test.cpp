// The walks a client makes through associators and associatorNames.
#include <qzantras/MgmtTypes.h>

#include <vector>

#include "instanceInspection.h"
#include "readModelSupport.h"
#include "smallClusterModels.h"

using namespace Pegasus;

namespace {

class AssociationOperationsTest : public ReadModelTest {
protected:
    Array<CIMObjectPath> farNames(const CIMObjectPath& from, const char* assoc,
                                  const char* resultClass = 0, const char* role = "",
                                  const char* resultRole = "") {
        RecordingPathHandler handler;
        provider->associatorNames(context, from, CIMName(assoc),
                                  resultClass ? CIMName(resultClass) : CIMName(), role, resultRole,
                                  handler);
        EXPECT_EQ(handler.calls.complete, 1);
        return handler.paths;
    }
    // The far ends' instances, as their paths.
    Array<CIMObjectPath> far(const CIMObjectPath& from, const char* assoc) {
        RecordingObjectHandler handler;
        provider->associators(context, from, CIMName(assoc), CIMName(), String(), String(), false,
                              false, CIMPropertyList(), handler);
        EXPECT_EQ(handler.calls.complete, 1);
        Array<CIMObjectPath> paths;
        for (Uint32 i = 0; i < handler.objects.size(); i++)
            paths.append(handler.objects[i].getPath());
        return paths;
    }
    Array<CIMObjectPath> pick(const char* className, std::vector<Uint32> indexes) {
        Array<CIMObjectPath> all = names(className), chosen;
        for (Uint32 i : indexes)
            chosen.append(all[i]);
        return chosen;
    }
    CIMObjectPath at(const char* className, Uint32 index) { return names(className)[index]; }
    static bool logged(const std::string& line) { return findLine(logLines(), line) != -1; }
    static bool same(const Array<CIMObjectPath>& a, const Array<CIMObjectPath>& b) {
        bool equal = a.size() == b.size();
        for (Uint32 i = 0; equal && i < a.size(); i++)
            equal = a[i] == b[i];
        return equal;
    }
};

TEST_F(AssociationOperationsTest, EveryWalkReachesExactlyItsFarEnds) {
    start(SMALL_CLUSTER);
    struct Walk {
        const char* from;
        Uint32 fromIndex;
        const char* assoc;
        const char* farClass;
        std::vector<Uint32> farIndexes;
    };
    // Disks: b1, b2, then the free disk; nodes: n1, n2.
    const Walk walks[] = {
        {"KOR_VEXA_Cluster", 0, "KOR_VEXA_ComponentCS", "KOR_VEXA_Node", {0, 1}},
        {"KOR_VEXA_Cluster", 0, "KOR_VEXA_HostedFileSystem", "KOR_VEXA_FileSystem", {0}},
        {"KOR_VEXA_Cluster", 0, "KOR_VEXA_FreeNSD", "KOR_VEXA_NSD", {2}},
        {"KOR_VEXA_FileSystem", 0, "KOR_VEXA_AssociatedStoragePool", "KOR_VEXA_StoragePool", {0}},
        {"KOR_VEXA_FileSystem", 0, "KOR_VEXA_AssociatedFileset", "KOR_VEXA_Fileset", {0, 1}},
        {"KOR_VEXA_StoragePool", 0, "KOR_VEXA_StorageComponent", "KOR_VEXA_NSD", {0, 1}},
        {"KOR_VEXA_NSD", 0, "KOR_VEXA_NodeServingNSD", "KOR_VEXA_Node", {0, 1}},
        {"KOR_VEXA_NSD", 1, "KOR_VEXA_NodeServingNSD", "KOR_VEXA_Node", {1}},
        {"KOR_VEXA_Node", 1, "KOR_VEXA_NodeAccessesNSD", "KOR_VEXA_NSD", {0}},
    };
    for (const Walk& walk : walks) {
        CIMObjectPath from = at(walk.from, walk.fromIndex);
        from.setHost("client.example"); // the server's host never prevents a match
        Array<CIMObjectPath> expected = pick(walk.farClass, walk.farIndexes);
        EXPECT_TRUE(same(farNames(from, walk.assoc), expected))
            << walk.assoc << " from " << walk.from;
        EXPECT_TRUE(same(far(from, walk.assoc), expected)) << walk.assoc << " from " << walk.from;
    }
}

TEST_F(AssociationOperationsTest, RolesAndResultClassesFilterTheFarEnds) {
    start(SMALL_CLUSTER);
    const CIMObjectPath cluster = at("KOR_VEXA_Cluster", 0);
    const char* const cs = "KOR_VEXA_ComponentCS";
    EXPECT_EQ(farNames(cluster, cs, "KOR_VEXA_Node", "groupcomponent", "PartComponent").size(), 2u);
    EXPECT_EQ(farNames(cluster, cs, 0, "PartComponent").size(), 0u);
    EXPECT_EQ(farNames(cluster, cs, 0, "", "GroupComponent").size(), 0u);
    EXPECT_EQ(farNames(cluster, cs, "KOR_VEXA_FileSystem").size(), 0u);

    // An association whose two ends are the object itself has no far end.
    CIMInstance loop = provider->createVexaComponentCS(cluster, cluster);
    EXPECT_EQ(provider->filterAssociationInstances(loop, cluster, CIMName(), String()).size(), 0u);
}

TEST_F(AssociationOperationsTest, ConformanceReachesTheSystemAfterACachePass) {
    start(SMALL_CLUSTER);
    // Profile 1 conforms for the computer system; its far end makes the
    // provider trade its read lock for a pass and back.
    const CIMObjectPath profile = at("CIM_RegisteredProfile", 1);
    ageCache();
    EXPECT_EQ(far(profile, "CIM_ElementConformsToProfile").size(), 1u);
    EXPECT_EQ(farNames(profile, "CIM_ElementConformsToProfile").size(), 0u);
    EXPECT_TRUE(logged("L2 VexaProvider::getInstance: CIM_ElementConformsToProfile is not "
                       "supported."));

    EXPECT_EQ(far(profile, "KOR_VEXA_NoSuch").size(), 0u);
    EXPECT_TRUE(logged("L2 VexaProvider::associators: KOR_VEXA_NoSuch is not supported."));
    RecordingPathHandler ignored;
    provider->associatorNames(context, classPath("KOR_VEXA_Cluster", "root/other"),
                              CIMName("KOR_VEXA_ComponentCS"), CIMName(), String(), String(),
                              ignored);
    EXPECT_EQ(ignored.calls.total(), 0);
}

TEST_F(AssociationOperationsTest, QuotasAreReadWhenAskedFor) {
    start();
    const CIMObjectPath fileset = at("KOR_VEXA_Fileset", 0);
    ASSERT_EQ(fileset.getKeyBindings().size(), 7u);
    Array<CIMObjectPath> quota = far(fileset, "KOR_VEXA_AssociatedFilesetQuota");
    ASSERT_EQ(quota.size(), 1u);
    EXPECT_EQ(provider->filesetQuotas[0].getPath(), quota[0]);

    // A user path, made by the client: its quota comes from the library.
    Array<CIMKeyBinding> keys = fileset.getKeyBindings();
    keys.remove(5); // "ID"
    keys[0].setValue("KOR_VEXA_User");
    keys[5].setValue("alice");
    const CIMObjectPath user(String(), NAMESPACE, CIMName("KOR_VEXA_User"), keys);
    EXPECT_EQ(far(user, "KOR_VEXA_AssociatedUserQuota").size(), 1u);
    EXPECT_EQ(textOf(provider->userQuotas[0], "vexaQuotaID"), "1001");
    EXPECT_TRUE(valueOf(provider->userQuotas[0], "vexaQuotaRemarks").isNull());

    // Too few keys for a fileset's name: a failure, not an exception.
    EXPECT_EQ(far(user, "KOR_VEXA_AssociatedFilesetQuota").size(), 0u);
    const std::string failed =
        "L2 VexaProvider::associators: KOR_VEXA_AssociatedFilesetQuota failed to get quota.";
    EXPECT_TRUE(logged(failed));
    // Not a user, group or fileset at all: no look-up, no answer.
    qzsim::clearCapturedLog();
    EXPECT_EQ(far(at("KOR_VEXA_Cluster", 0), "KOR_VEXA_AssociatedUserQuota").size(), 0u);
    EXPECT_EQ(countLines(logLines(), "L0 VexaProvider::buildQuotaInstance: ENTER"), 0);

    qzsim::failOperation("getQuota", 9, 1);
    EXPECT_EQ(far(fileset, "KOR_VEXA_AssociatedFilesetQuota").size(), 0u);
    EXPECT_TRUE(logged(failed));
    EXPECT_EQ(far(fileset, "KOR_VEXA_AssociatedFilesetQuota").size(), 1u);

    // The file-system quota lists are not built: always the failure line.
    EXPECT_EQ(farNames(at("KOR_VEXA_FileSystem", 0), "KOR_VEXA_FileSystemUserQuotas").size(), 0u);
    EXPECT_TRUE(logged("L2 VexaProvider::associatorNames: KOR_VEXA_FileSystemUserQuotas failed "
                       "to get quota."));
}

} // namespace
