// What a management client sees of the built-in demo cluster: every class of
// the read model, its instance count, and each instance fetched back by path.
#include <map>
#include <set>

#include "readModelSupport.h"

PEGASUS_USING_PEGASUS;

namespace {

class DemoReadModelTest : public ReadModelTest {
protected:
    void SetUp() override {
        ReadModelTest::SetUp();
        start();
    }
};

// Counts implied by examples/clusters/demo.json.
const std::map<std::string, Uint32> DEMO_COUNTS = {
    {"CIM_RegisteredProfile", 3},
    {"CIM_ObjectManager", 1},
    {"KOR_VEXA_IndicationFilter", 2},
    {"KOR_VEXA_Cluster", 1},
    {"KOR_VEXA_Node", 4},
    {"KOR_VEXA_FileSystem", 2},
    {"KOR_VEXA_NSD", 9},         // seven in pools, two free
    {"KOR_VEXA_StoragePool", 3}, // fs1: system, data; fs2: system
    {"KOR_VEXA_Policy", 1},
    {"KOR_VEXA_ComponentCS", 4},
    {"KOR_VEXA_HostedFileSystem", 2},
    {"KOR_VEXA_AssociatedStoragePool", 3},
    {"KOR_VEXA_StorageComponent", 7},
    {"KOR_VEXA_NodeServingNSD", 15}, // every listed server is a known node
    {"KOR_VEXA_NodeAccessesNSD", 10},
    {"KOR_VEXA_FreeNSD", 2},
    {"KOR_VEXA_Mounted", 3},
    {"KOR_VEXA_Config_Manager", 1},
    {"KOR_VEXA_FileSystem_Manager", 2},
    // Each file system also has its root fileset.
    {"KOR_VEXA_Fileset", 6},
    {"KOR_VEXA_AssociatedFileset", 6},
    // Users and groups are not delivered by the library yet.
    {"KOR_VEXA_User", 0},
    {"KOR_VEXA_Group", 0},
};

TEST_F(DemoReadModelTest, EveryClassHoldsWhatTheModelImplies) {
    for (const auto& [className, count] : DEMO_COUNTS) {
        Array<CIMInstance> instances = enumerate(className.c_str());
        EXPECT_EQ(instances.size(), count) << className;
        Array<CIMObjectPath> paths = names(className.c_str());
        if (className != "KOR_VEXA_Policy") {
            ASSERT_EQ(paths.size(), instances.size()) << className;
            for (Uint32 i = 0; i < paths.size(); i++)
                EXPECT_TRUE(paths[i] == instances[i].getPath()) << className;
        }
    }
}

TEST_F(DemoReadModelTest, GetInstanceReturnsEachEnumeratedInstance) {
    for (const auto& entry : DEMO_COUNTS) {
        const std::string& className = entry.first;
        if (className == "KOR_VEXA_Policy")
            continue; // served by enumeration only
        Array<CIMInstance> instances = enumerate(className.c_str());
        for (Uint32 i = 0; i < instances.size(); i++) {
            Array<CIMInstance> got = get(instances[i].getPath());
            ASSERT_EQ(got.size(), 1u) << instances[i].getPath().toString().getCString();
            EXPECT_TRUE(got[0].identical(instances[i])) << className;
        }
    }
}

TEST_F(DemoReadModelTest, PerformanceClassesAreServedInAnyOrder) {
    // As a CIM server enumerating CIM_ManagedElement may ask: the per-disk and
    // per-node counters before any enumeration of the file-system ones.
    EXPECT_EQ(enumerate("KOR_VEXA_DiskPerf").size(), 7u);
    EXPECT_EQ(enumerate("KOR_VEXA_FileSystemPerNodePerf").size(), 3u);
    Array<CIMInstance> fsPerf = enumerate("KOR_VEXA_FileSystemPerf");
    EXPECT_EQ(fsPerf.size(), 2u);
    for (Uint32 i = 0; i < fsPerf.size(); i++)
        EXPECT_EQ(get(fsPerf[i].getPath()).size(), 1u);
}

TEST_F(DemoReadModelTest, AssociationEndsPointAtServedInstances) {
    std::set<std::string> served;
    for (const char* className :
         {"KOR_VEXA_Cluster", "KOR_VEXA_Node", "KOR_VEXA_FileSystem", "KOR_VEXA_NSD",
          "KOR_VEXA_StoragePool", "KOR_VEXA_Fileset", "KOR_VEXA_Policy"}) {
        Array<CIMInstance> instances = enumerate(className);
        for (Uint32 i = 0; i < instances.size(); i++)
            served.insert((const char*)instances[i].getPath().toString().getCString());
    }
    for (const char* association :
         {"KOR_VEXA_ComponentCS", "KOR_VEXA_HostedFileSystem", "KOR_VEXA_AssociatedStoragePool",
          "KOR_VEXA_StorageComponent", "KOR_VEXA_NodeServingNSD", "KOR_VEXA_NodeAccessesNSD",
          "KOR_VEXA_FreeNSD", "KOR_VEXA_Mounted", "KOR_VEXA_Config_Manager",
          "KOR_VEXA_FileSystem_Manager", "KOR_VEXA_AssociatedFileset"}) {
        Array<CIMInstance> instances = enumerate(association);
        for (Uint32 i = 0; i < instances.size(); i++) {
            for (Uint32 p = 0; p < 2; p++) {
                CIMObjectPath end;
                instances[i].getProperty(p).getValue().get(end);
                EXPECT_EQ(served.count((const char*)end.toString().getCString()), 1u)
                    << association << " " << end.toString().getCString();
            }
        }
    }
}

// Property spellings and the object manager's path are the builders' (see
// accountPerfDiscoveryInstances_test); here, what the enumerations answer.
TEST_F(DemoReadModelTest, DiscoveryAnswersProfilesObjectManagerAndFilters) {
    Array<CIMInstance> profiles = enumerate("CIM_RegisteredProfile");
    ASSERT_EQ(profiles.size(), 3u);
    const char* expected[] = {"KOR:Server_1.0.0", "KOR:VEXA_1.0.0",
                              "KOR:VEXA_Provider_110509_1.0.0"};
    for (Uint32 i = 0; i < 3; i++) {
        EXPECT_EQ(text(profiles[i], "instanceId"), expected[i]);
        EXPECT_EQ(text(profiles[i], "AdvertiseTypes") + text(profiles[i], "RegisteredOrganization"),
                  "21");
    }
    Array<CIMInstance> managers = enumerate("CIM_ObjectManager");
    ASSERT_EQ(managers.size(), 1u);
    EXPECT_EQ(text(managers[0], "Name"), "KOR:127.0.0.1");
    Array<CIMInstance> filters = enumerate("KOR_VEXA_IndicationFilter");
    ASSERT_EQ(filters.size(), 2u);
    EXPECT_EQ(text(filters[0], "Name"), "MountFilter");
    EXPECT_EQ(text(filters[1], "Query"), "SELECT * FROM KOR_VEXA_UnmountIndication");

    // The conformance associations and the computer system are built but not
    // served by the instance operations.
    ASSERT_EQ(provider->computerSystems.size(), 1u);
    ASSERT_EQ(provider->csConformsToProfile.size(), 1u);
    CIMObjectPath profileEnd, systemEnd;
    provider->csConformsToProfile[0].getProperty(0).getValue().get(profileEnd);
    provider->csConformsToProfile[0].getProperty(1).getValue().get(systemEnd);
    EXPECT_TRUE(profileEnd == profiles[1].getPath());
    EXPECT_TRUE(systemEnd == provider->computerSystems[0].getPath());
    ASSERT_EQ(provider->objMgrConformsToProfile.size(), 1u);
    provider->objMgrConformsToProfile[0].getProperty(0).getValue().get(profileEnd);
    EXPECT_TRUE(profileEnd == profiles[0].getPath());
    EXPECT_EQ(enumerate("CIM_ComputerSystem").size(), 0u);
    EXPECT_EQ(enumerate("CIM_ElementConformsToProfile").size(), 0u);
}

} // namespace
