// Filesets, users, groups, policies, performance counters and the discovery
// builders, as a client sees them.
#include <Pegasus/Common/CIMDateTime.h>

#include <qzantras/ClusterInfo.h>
#include <qzsim/SimControl.h>

#include <string>
#include <vector>

#include "cimProvider.h"
#include "classNames.h"
#include "instanceInspection.h"
#include "providerTestSupport.h"

PEGASUS_USING_PEGASUS;

namespace {

class AccountPerfDiscoveryInstancesTest : public ProviderTest {
protected:
    VexaProvider provider;
    ClusterInfo cluster;
    void SetUp() override {
        ProviderTest::SetUp();
        setText(cluster.clusterName, "c1");
    }
    bool logged(const std::string& line) { return findLine(logLines(), line) != -1; }
};

TEST_F(AccountPerfDiscoveryInstancesTest, FilesetPublishesQuotedEmptyCommentAsNullAndIdInPathOnly) {
    FileSet fileset;
    setText(fileset.name, "home");
    setText(fileset.fsName, "fs1");
    setText(fileset.id, "7");
    setText(fileset.comment, "\"\"");
    setText(fileset.created, "20240301091500.000000+000");

    CIMInstance instance = provider.createFileSetInstance(&fileset, &cluster);
    EXPECT_EQ(instance.findProperty(CIMName("ID")), PEG_NOT_FOUND);
    EXPECT_TRUE(valueOf(instance, "vexaFilesetComment").isNull());
    EXPECT_EQ(textOf(instance, "vexaFilesetCreated"), "20240301091500.000000+000");
    EXPECT_EQ(pathOf(instance),
              "root/cimv2:KOR_VEXA_Fileset.CreationClassName=\"KOR_VEXA_Fileset\","
              "CSCreationClassName=\"KOR_VEXA_Cluster\",CSName=\"c1\","
              "FSCreationClassName=\"KOR_VEXA_FileSystem\",FSName=\"fs1\",ID=\"7\",Name=\"home\"");
    EXPECT_TRUE(logged("L0 VexaProvider::createFileSetInstance: stgId = c1+fs1+home"));

    // An empty comment is a comment; one quote pair with text inside too.
    setText(fileset.comment, "");
    CIMValue empty =
        valueOf(provider.createFileSetInstance(&fileset, &cluster), "vexaFilesetComment");
    EXPECT_FALSE(empty.isNull());
    EXPECT_EQ(text(empty.toString()), "");
    setText(fileset.comment, "\"x\"");
    EXPECT_EQ(textOf(provider.createFileSetInstance(&fileset, &cluster), "vexaFilesetComment"),
              "\"x\"");

    // A creation time that is no CIM datetime does not escape as an exception.
    setText(fileset.created, "yesterday");
    CIMValue created;
    EXPECT_NO_THROW(created = valueOf(provider.createFileSetInstance(&fileset, &cluster),
                                      "vexaFilesetCreated"));
    EXPECT_TRUE(created.isNull());
    EXPECT_EQ(created.getType(), CIMTYPE_DATETIME);
}

TEST_F(AccountPerfDiscoveryInstancesTest, UserWithoutAccountDetailsHasTypedNulls) {
    User user;
    setText(user.name, "ann");
    setText(user.fsName, "fs1");
    setText(user.clusterName, "c1");
    setText(user.homePath, "/home/ann");
    user.uid = 500;
    user.gid = 100;

    user.detailsKnown = 1;
    CIMInstance known = provider.createUserInstance(&user);
    EXPECT_EQ(textOf(known, "vexaUserHomePath"), "/home/ann");
    EXPECT_EQ(textOf(known, "vexaUserMainGroupId"), "100");
    EXPECT_EQ(pathOf(known),
              "root/cimv2:KOR_VEXA_User.CreationClassName=\"KOR_VEXA_User\","
              "CSCreationClassName=\"KOR_VEXA_Cluster\",CSName=\"c1\","
              "FSCreationClassName=\"KOR_VEXA_FileSystem\",FSName=\"fs1\",Name=\"ann\"");
    EXPECT_TRUE(logged("L0 VexaProvider::createUserInstance: "
                       "vexaUser=ann, vexaUserUID=500,vexaUserFileSystem=fs1"));

    user.detailsKnown = 0;
    CIMInstance unknown = provider.createUserInstance(&user);
    EXPECT_EQ(signature(unknown), signature(known));
    EXPECT_TRUE(valueOf(unknown, "vexaUserHomePath").isNull());
    EXPECT_TRUE(valueOf(unknown, "vexaUserMainGroupId").isNull());

    // Groups log under the user builder's label.
    Group group;
    setText(group.name, "staff");
    setText(group.fsName, "fs1");
    setText(group.clusterName, "c1");
    group.gid = 100;
    CIMInstance staff = provider.createGroupInstance(&group);
    EXPECT_EQ(staff.getPropertyCount(), 4u);
    EXPECT_EQ(staff.getClassName(), VEXA_GROUP);
    EXPECT_TRUE(logged("L0 VexaProvider::createUserInstance: "
                       "vexaGroupName=staff, vexaGroupGID=100,vexaGroupFileSystem=fs1"));
}

TEST_F(AccountPerfDiscoveryInstancesTest, PolicyRulesKeepTheirOrderAndNoRulesIsAnEmptyArray) {
    PolicyInfo policy;
    setText(policy.name, "placement");
    CIMInstance none = provider.createPolicyInstance(&cluster, &policy);
    CIMValue rules = valueOf(none, "vexaRules");
    EXPECT_FALSE(rules.isNull());
    EXPECT_EQ(rules.getArraySize(), 0u);
    EXPECT_TRUE(logged("L0 VexaProvider::createPolicyInstance: nRules = 0"));

    for (const char* description : {"RULE 'a' SET POOL 'system'", "RULE 'b' SET POOL 'data'"}) {
        PolicyRule* rule = new PolicyRule; // owned by the policy record
        setText(rule->description, description);
        policy.ruleList.push_back(rule);
    }
    CIMInstance two = provider.createPolicyInstance(&cluster, &policy);
    Array<String> texts;
    valueOf(two, "vexaRules").get(texts);
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(text(texts[0]), "RULE 'a' SET POOL 'system'");
    EXPECT_EQ(text(texts[1]), "RULE 'b' SET POOL 'data'");
    EXPECT_EQ(pathOf(two), "root/cimv2:KOR_VEXA_Policy.CreationClassName=\"KOR_VEXA_Policy\","
                           "PolicyGroupName=\"placement\","
                           "SystemCreationClassName=\"KOR_VEXA_ManagementSystem\","
                           "SystemName=\"c1\"");
}

TEST_F(AccountPerfDiscoveryInstancesTest, PerformanceIdsAndSamplingTimes) {
    cluster.perfSampleSec = 1700000000;
    cluster.perfSampleUsec = 250000;
    FilesystemInfo fs;
    setText(fs.name, "fs1");
    fs.duration = 60;
    fs.writeD = 3;
    fs.counters.caches = 42;
    fs.counters.statCacheMiss = 9;
    CIMInstance fsPerf = provider.createFileSystemPerfInstance(&cluster, &fs);
    EXPECT_EQ(textOf(fsPerf, "vexaSamplingTimeInMicroseconds"), "250000");
    EXPECT_EQ(textOf(fsPerf, "vexaFileSystemStatCacheMiss"), "9");
    EXPECT_EQ(pathOf(fsPerf), "root/cimv2:KOR_VEXA_FileSystemPerf.InstanceID=\"c1+fs1\"");
    EXPECT_TRUE(logged("L0 VexaProvider::createFileSystemPerfInstance: caches = 42"));

    FilesystemPerf perNode;
    setText(perNode.fsName, "fs1");
    setText(perNode.nodeName, "n1");
    setText(perNode.nodeIpAddr, "10.0.0.1");
    CIMInstance nodePerf = provider.createFsPerNodePerfInstance(&cluster, &perNode);
    EXPECT_EQ(textOf(nodePerf, "InstanceID"), "c1+fs1+10.0.0.1");
    ClusterInfo other;
    setText(other.clusterName, "c2");
    EXPECT_NE(provider.createFsPerNodePerfInstance(&other, &perNode).getPath(), nodePerf.getPath());

    StoragePoolInfo pool;
    setText(pool.name, "system");
    pool.perfSampleSec = 1700000123;
    DiskInfo disk;
    setText(disk.name, "d1");
    disk.readTime = 1.5;
    CIMInstance diskPerf = provider.createDiskPerfInstance(&fs, &pool, &disk);
    EXPECT_EQ(textOf(diskPerf, "vexaSamplingTimeInSeconds"), "1700000123");
    // The disk id leaves the cluster out.
    EXPECT_EQ(pathOf(diskPerf), "root/cimv2:KOR_VEXA_DiskPerf.InstanceID=\"fs1+system+d1\"");
}

TEST_F(AccountPerfDiscoveryInstancesTest, DiscoveryInstancesKeepThePublishedSpellings) {
    CIMInstance profile = provider.createRegProfile(
        REGISTERED_PROFILE, String("Server"), String("1.0.0"), 2, 1, String("KOR:Server_1.0.0"));
    EXPECT_EQ(pathOf(profile), "root/cimv2:CIM_RegisteredProfile.instanceId=\"KOR:Server_1.0.0\"");

    CIMInstance manager = provider.createRegProfile(
        OBJECT_MANAGER, String("KOR:10.0.0.9"), String("10.0.0.9"), String("CIM Server"),
        String("KOR VEXA CIMOM"), String("KOR_VEXA_ObjectManager"),
        String("KOR_VEXA_ManagementSystem"));
    EXPECT_EQ(textOf(manager, "ElemendName"), "CIM Server");
    EXPECT_EQ(pathOf(manager), "root/cimv2:CIM_ObjectManager.SystemName=\"10.0.0.9\"");

    CIMInstance system =
        provider.createComputerSystemInstance(COMPUTER_SYSTEM, String("KOR_VEXA"), String("VEXA"));
    EXPECT_EQ(pathOf(system),
              "root/cimv2:CIM_ComputerSystem.CreationClassName=\"VEXA\",Name=\"KOR_VEXA\"");
}

} // namespace
