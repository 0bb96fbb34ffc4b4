// The shape every association instance shares: two typed references, a
// path keyed by both roles, and the declared classes the schema gives them.
#include <gtest/gtest.h>

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include "cimProvider.h"

PEGASUS_USING_PEGASUS;

namespace {

CIMObjectPath pathOf(const char* className, const char* key) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Name"), String(key), CIMKeyBinding::STRING));
    return CIMObjectPath(String(), CIMNamespaceName("root/cimv2"), CIMName(className), keys);
}

class AssociationBuildersTest : public ::testing::Test {
protected:
    ~AssociationBuildersTest() override { delete provider; }
    VexaProvider* provider = new VexaProvider();
};

struct Expected {
    const char* associationClass;
    const char* firstRole;
    const char* firstDeclared;
    const char* secondRole;
    const char* secondDeclared;
};

void expectShape(const CIMInstance& association, const Expected& expected,
                 const CIMObjectPath& first, const CIMObjectPath& second) {
    SCOPED_TRACE(expected.associationClass);
    EXPECT_EQ(association.getClassName().getString(), expected.associationClass);
    const char* roles[] = {expected.firstRole, expected.secondRole};
    const char* declared[] = {expected.firstDeclared, expected.secondDeclared};
    const CIMObjectPath* ends[] = {&first, &second};
    for (Uint32 i = 0; i < 2; i++) {
        CIMConstProperty property = association.getProperty(i);
        EXPECT_EQ(property.getName().getString(), roles[i]);
        EXPECT_EQ(property.getType(), CIMTYPE_REFERENCE);
        EXPECT_EQ(property.getReferenceClassName().getString(), declared[i]);
        EXPECT_FALSE(property.getPropagated());
        CIMObjectPath value;
        property.getValue().get(value);
        EXPECT_TRUE(value == *ends[i]);
    }

    CIMObjectPath path = association.getPath();
    EXPECT_EQ(path.getHost(), "");
    EXPECT_EQ(path.getNameSpace().getString(), "root/cimv2");
    EXPECT_EQ(path.getClassName().getString(), expected.associationClass);
    Array<CIMKeyBinding> keys = path.getKeyBindings();
    ASSERT_EQ(keys.size(), 2u);
    for (Uint32 i = 0; i < 2; i++) {
        EXPECT_EQ(keys[i].getName().getString(), roles[i]);
        EXPECT_EQ(keys[i].getType(), CIMKeyBinding::REFERENCE);
        EXPECT_EQ(keys[i].getValue(), ends[i]->toString());
    }
}

TEST_F(AssociationBuildersTest, EveryBuilderMakesItsDeclaredShape) {
    CIMObjectPath a = pathOf("KOR_VEXA_Whatever", "a");
    CIMObjectPath b = pathOf("KOR_VEXA_Other", "b");
    VexaProvider& p = *provider;
    struct Case {
        CIMInstance instance;
        Expected expected;
    } cases[] = {
        {p.createVexaStorageComp(a, b),
         {"KOR_VEXA_StorageComponent", "GroupComponent", "KOR_VEXA_StoragePool", "PartComponent",
          "KOR_VEXA_NSD"}},
        {p.createVexaComponentCS(a, b),
         {"KOR_VEXA_ComponentCS", "GroupComponent", "KOR_VEXA_Cluster", "PartComponent",
          "KOR_VEXA_Node"}},
        // The system's conformance declares the cluster class for the
        // computer system it points at.
        {p.createAssocCS(a, b),
         {"CIM_ElementConformsToProfile", "ConformantStandard", "CIM_RegisteredProfile",
          "ManagedElement", "KOR_VEXA_Cluster"}},
        {p.createAssocObjMgr(a, b),
         {"CIM_ElementConformsToProfile", "ConformantStandard", "CIM_RegisteredProfile",
          "ManagedElement", "CIM_ObjectManager"}},
        {p.createVexaFSPolicy(a, b),
         {"KOR_VEXA_FileSystem_Policy", "Antecedent", "KOR_VEXA_FileSystem", "Dependent",
          "KOR_VEXA_Policy"}},
        {p.createVexaFileSystemMgr(a, b),
         {"KOR_VEXA_FileSystem_Manager", "Antecedent", "KOR_VEXA_FileSystem", "Dependent",
          "KOR_VEXA_Node"}},
        {p.createVexaConfigMgr(a, b),
         {"KOR_VEXA_Config_Manager", "Antecedent", "KOR_VEXA_Cluster", "Dependent",
          "KOR_VEXA_Node"}},
        {p.createVexaMounted(a, b),
         {"KOR_VEXA_Mounted", "Antecedent", "KOR_VEXA_Node", "Dependent", "KOR_VEXA_FileSystem"}},
        {p.createVexaFreeNsd(a, b),
         {"KOR_VEXA_FreeNSD", "Antecedent", "KOR_VEXA_Cluster", "Dependent", "KOR_VEXA_NSD"}},
        {p.createAssocGroupQuotaInstances(a, b),
         {"KOR_VEXA_FileSystemGroupQuotas", "Antecedent", "KOR_VEXA_FileSystem", "Dependent",
          "KOR_VEXA_Group_Quota"}},
        {p.createAssocUserQuotaInstances(a, b),
         {"KOR_VEXA_FileSystemUserQuotas", "Antecedent", "KOR_VEXA_FileSystem", "Dependent",
          "KOR_VEXA_User_Quota"}},
        {p.createAssocFilesetQuotaInstances(a, b),
         {"KOR_VEXA_FileSystemFilesetQuotas", "Antecedent", "KOR_VEXA_FileSystem", "Dependent",
          "KOR_VEXA_Fileset_Quota"}},
        {p.createGroupAssocInstance(a, b),
         {"KOR_VEXA_AssociatedGroup", "Antecedent", "KOR_VEXA_FileSystem", "Dependent",
          "KOR_VEXA_Group"}},
        {p.createUserAssocInstance(a, b),
         {"KOR_VEXA_AssociatedUser", "Antecedent", "KOR_VEXA_FileSystem", "Dependent",
          "KOR_VEXA_User"}},
        // The user quota's owner end is declared as a group, like the
        // group quota's.
        {p.createVexaAssociatedUserQuota(a, b),
         {"KOR_VEXA_AssociatedUserQuota", "Antecedent", "KOR_VEXA_Group", "Dependent",
          "KOR_VEXA_User_Quota"}},
        {p.createVexaAssociatedGroupQuota(a, b),
         {"KOR_VEXA_AssociatedGroupQuota", "Antecedent", "KOR_VEXA_Group", "Dependent",
          "KOR_VEXA_Group_Quota"}},
        {p.createVexaAssociatedFilesetQuota(a, b),
         {"KOR_VEXA_AssociatedFilesetQuota", "Antecedent", "KOR_VEXA_Fileset", "Dependent",
          "KOR_VEXA_Fileset_Quota"}},
        {p.createVexaAssociatedFileset(a, b),
         {"KOR_VEXA_AssociatedFileset", "Antecedent", "KOR_VEXA_FileSystem", "Dependent",
          "KOR_VEXA_Fileset"}},
        {p.createVexaAssocSP(a, b),
         {"KOR_VEXA_AssociatedStoragePool", "Antecedent", "KOR_VEXA_FileSystem", "Dependent",
          "KOR_VEXA_StoragePool"}},
        {p.createVexaHostedFS(a, b),
         {"KOR_VEXA_HostedFileSystem", "GroupComponent", "KOR_VEXA_Cluster", "PartComponent",
          "KOR_VEXA_FileSystem"}},
    };
    for (const Case& c : cases) {
        expectShape(c.instance, c.expected, a, b);
        EXPECT_EQ(c.instance.getPropertyCount(), 2u) << c.expected.associationClass;
    }
}

TEST_F(AssociationBuildersTest, KeyValuesAreTheEndsTextFormsIncludingTheirNamespace) {
    CIMObjectPath node = pathOf("KOR_VEXA_Node", "c+n1");
    CIMObjectPath fs = pathOf("KOR_VEXA_FileSystem", "fs1");
    CIMInstance mounted = provider->createVexaMounted(node, fs);
    EXPECT_EQ(mounted.getPath().getKeyBindings()[0].getValue(),
              "root/cimv2:KOR_VEXA_Node.Name=\"c+n1\"");
    // The same two ends make the same path: duplicates are possible.
    EXPECT_TRUE(provider->createVexaMounted(node, fs).getPath() == mounted.getPath());
}

TEST_F(AssociationBuildersTest, TheDiskBuildersAddTheirValuesAfterTheReferences) {
    CIMObjectPath node = pathOf("KOR_VEXA_Node", "c1+n1");
    CIMObjectPath disk = pathOf("KOR_VEXA_NSD", "d1");
    ClusterInfo cluster;
    DiskAccessInfo access;
    CIMInstance reaches = provider->createVexaNodeAccessNsd(node, disk, &access, &cluster);
    expectShape(
        reaches,
        {"KOR_VEXA_NodeAccessesNSD", "Antecedent", "KOR_VEXA_Node", "Dependent", "KOR_VEXA_NSD"},
        node, disk);
    EXPECT_EQ(reaches.getPropertyCount(), 5u);
    CIMInstance serves = provider->createVexaNodeServNsd(disk, node, 0);
    expectShape(
        serves,
        {"KOR_VEXA_NodeServingNSD", "Antecedent", "KOR_VEXA_NSD", "Dependent", "KOR_VEXA_Node"},
        disk, node);
    EXPECT_EQ(serves.getPropertyCount(), 3u);
}

} // namespace
