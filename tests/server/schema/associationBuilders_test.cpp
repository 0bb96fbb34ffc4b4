// Every association builder against the schema: two references named and
// typed as the schema declares the roles of the class it builds, and a path
// keyed by both roles with the ends' text forms.
#include <vexa/schema/SchemaRepository.h>

#include <Pegasus/Common/CIMProperty.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "cimProvider.h"

PEGASUS_USING_PEGASUS;
using vexa::schema::SchemaRepository;

namespace {

CIMObjectPath pathOf(const char* className, const char* key) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Name"), String(key), CIMKeyBinding::STRING));
    return CIMObjectPath(String(), CIMNamespaceName("root/cimv2"), CIMName(className), keys);
}

TEST(AssociationBuilders, EveryBuilderMakesTheShapeItsClassDeclares) {
    SchemaRepository schema = SchemaRepository::builtIn();
    std::unique_ptr<VexaProvider> provider(new VexaProvider());
    VexaProvider& p = *provider;
    const CIMObjectPath a = pathOf("KOR_VEXA_Whatever", "a");
    const CIMObjectPath b = pathOf("KOR_VEXA_Other", "b");
    ClusterInfo cluster;
    DiskAccessInfo access;
    const CIMInstance built[] = {
        p.createVexaStorageComp(a, b), p.createVexaComponentCS(a, b), p.createAssocCS(a, b),
        p.createAssocObjMgr(a, b), p.createVexaFSPolicy(a, b), p.createVexaFileSystemMgr(a, b),
        p.createVexaConfigMgr(a, b), p.createVexaMounted(a, b), p.createVexaFreeNsd(a, b),
        p.createAssocGroupQuotaInstances(a, b), p.createAssocUserQuotaInstances(a, b),
        p.createAssocFilesetQuotaInstances(a, b), p.createGroupAssocInstance(a, b),
        p.createUserAssocInstance(a, b), p.createVexaAssociatedUserQuota(a, b),
        p.createVexaAssociatedGroupQuota(a, b), p.createVexaAssociatedFilesetQuota(a, b),
        p.createVexaAssociatedFileset(a, b), p.createVexaAssocSP(a, b), p.createVexaHostedFS(a, b),
        // These two add their values after the references.
        p.createVexaNodeAccessNsd(a, b, &access, &cluster), p.createVexaNodeServNsd(a, b, 0)};
    for (const CIMInstance& association : built) {
        const std::string className(association.getClassName().getString().getCString());
        SCOPED_TRACE(className);
        const CIMClass* declared = schema.findClass(association.getClassName());
        ASSERT_NE(declared, nullptr);
        std::vector<CIMConstProperty> roles;
        for (Uint32 i = 0; i < declared->getPropertyCount(); i++) {
            if (declared->getProperty(i).getType() == CIMTYPE_REFERENCE) {
                roles.push_back(declared->getProperty(i));
            }
        }
        ASSERT_EQ(roles.size(), 2u);
        const CIMObjectPath& path = association.getPath();
        EXPECT_EQ(path.getHost(), "");
        EXPECT_EQ(path.getNameSpace(), CIMNamespaceName("root/cimv2"));
        Array<CIMKeyBinding> keys = path.getKeyBindings();
        ASSERT_EQ(keys.size(), 2u);
        const CIMObjectPath* ends[] = {&a, &b};
        for (Uint32 i = 0; i < 2; i++) {
            CIMConstProperty property = association.getProperty(i);
            EXPECT_EQ(property.getName(), roles[i].getName());
            EXPECT_FALSE(property.getPropagated());
            // The CIM class is published as it is and serves several pairs
            // of ends; each builder names the class its end really has.
            if (className.rfind("CIM_", 0) == 0) {
                EXPECT_TRUE(
                    schema.isA(property.getReferenceClassName(), roles[i].getReferenceClassName()));
            } else {
                EXPECT_EQ(property.getReferenceClassName(), roles[i].getReferenceClassName());
            }
            CIMObjectPath value;
            property.getValue().get(value);
            EXPECT_EQ(value, *ends[i]);
            EXPECT_EQ(keys[i].getName(), roles[i].getName());
            EXPECT_EQ(keys[i].getType(), CIMKeyBinding::REFERENCE);
            EXPECT_EQ(keys[i].getValue(), ends[i]->toString());
        }
    }
    // The system's conformance declares the cluster class for the computer
    // system it points at.
    EXPECT_EQ(built[2].getProperty(1).getReferenceClassName(), CIMName("KOR_VEXA_Cluster"));
}

} // namespace
