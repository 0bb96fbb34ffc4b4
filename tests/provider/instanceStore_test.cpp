// Look-ups in the instance cache by key text, and the cache lock.
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <qzsim/SimControl.h>

#include <pthread.h>

#include "cimProvider.h"
#include "providerTestSupport.h"

PEGASUS_USING_PEGASUS;

namespace {

CIMInstance makeInstance(const CIMName& className, const char* keyProperty, const CIMValue& key,
                         const char* pathKey) {
    CIMInstance instance(className);
    instance.addProperty(CIMProperty(CIMName(keyProperty), key));
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Name"), String(pathKey), CIMKeyBinding::STRING));
    CIMObjectPath path(String(), NAMESPACE, className, keys);
    instance.setPath(path);
    return instance;
}

CIMInstance makeNode(const char* name, const char* ip, const char* pathKey) {
    CIMInstance node = makeInstance(VEXA_NODE, "vexaNodeName", CIMValue(String(name)), pathKey);
    node.addProperty(CIMProperty(CIMName("vexaNodeIP"), CIMValue(String(ip))));
    return node;
}

class InstanceStoreTest : public ProviderTest {
protected:
    VexaProvider provider;
    char* key(const char* text) { return const_cast<char*>(text); }
};

TEST_F(InstanceStoreTest, FirstMatchWinsAndKeysAreCaseSensitive) {
    provider.nodes.append(makeNode("node1", "10.0.0.1", "c+node1"));
    provider.nodes.append(makeNode("node2", "10.0.0.2", "c+node2"));
    provider.nodes.append(makeNode("node1", "10.0.0.3", "duplicate"));

    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_NODE_BY_NAME, key("node1")), 0);
    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_NODE_BY_NAME, key("node2")), 1);
    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_NODE_BY_NAME, key("NODE1")), -1);
    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_NODE_BY_IP, key("10.0.0.3")), 2);
    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_NODE_BY_NAME, key("10.0.0.3")), -1);

    CIMInstance* found =
        provider.findVexaInstance(VexaProvider::VEXA_INST_NODE_BY_NAME, key("node1"));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found, &provider.nodes[0]);
    EXPECT_EQ(provider.findVexaInstance(VexaProvider::VEXA_INST_NODE_BY_NAME, key("Node1")),
              nullptr);
    EXPECT_EQ(provider.findVexaInstance(VexaProvider::VEXA_INST_NODE_BY_NAME, nullptr), nullptr);
}

TEST_F(InstanceStoreTest, EachTypeSearchesItsOwnArrayAndProperty) {
    provider.clusters.append(
        makeInstance(VEXA_CLUSTER, "vexaClusterName", CIMValue(String("c1")), "c1"));
    provider.fileSystems.append(
        makeInstance(VEXA_FILESYSTEM, "vexaFileSystemName", CIMValue(String("fs")), "fs"));
    provider.storagePools.append(
        makeInstance(VEXA_STORAGE_POOL, "vexaStgPoolName", CIMValue(String("c1+fs+p")), "p"));
    // A key held as a number is compared in its text form.
    provider.disks.append(makeInstance(VEXA_DISK, "vexaDiskName", CIMValue(Uint32(7)), "d"));

    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_CLUSTER, key("c1")), 0);
    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_FILESYSTEM, key("fs")), 0);
    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_STORAGE_POOL, key("c1+fs+p")), 0);
    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_DISK, key("7")), 0);
    // The same text in another array is not found.
    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_FILESYSTEM, key("c1")), -1);

    // Instances without the key property are skipped, not errors.
    provider.nodes.append(CIMInstance(VEXA_NODE));
    provider.nodes.append(makeNode("n", "10.1.1.1", "c+n"));
    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_NODE_BY_NAME, key("n")), 1);
}

TEST_F(InstanceStoreTest, LogsTheResultButNothingForAnUnknownType) {
    EXPECT_EQ(provider.findVexaInstIdx(VexaProvider::VEXA_INST_NODE_BY_NAME, key("x")), -1);
    std::vector<std::string> lines = logLines();
    EXPECT_EQ(countLines(lines, "L0 VexaProvider::findVexaInstIdx: instance index = -1"), 1);

    qzsim::clearCapturedLog();
    auto outOfRange = static_cast<VexaProvider::VexaInstanceType>(6);
    EXPECT_EQ(provider.findVexaInstIdx(outOfRange, key("x")), -1);
    EXPECT_EQ(provider.findVexaInstance(outOfRange, key("x")), nullptr);
    EXPECT_TRUE(logLines().empty());

    provider.nodes.append(makeNode("n1", "10.0.0.1", "c+n1"));
    ASSERT_NE(provider.findVexaInstance(VexaProvider::VEXA_INST_NODE_BY_NAME, key("n1")), nullptr);
    EXPECT_EQ(countLines(logLines(), "L0 VexaProvider::findVexaInstance: instance found = "
                                     "root/cimv2:KOR_VEXA_Node.Name=\"c+n1\""),
              1);
}

TEST_F(InstanceStoreTest, ReadersShareTheLockAndAWriterExcludesThem) {
    ASSERT_EQ(provider.initVexaHandler(), 0);
    ASSERT_EQ(provider.getReadLock(), 0);

    // A second reader gets in while the first holds the lock; a writer does not.
    struct Probe {
        VexaProvider* provider;
        int readResult;
        int writeResult;
    } probe{&provider, -1, -1};
    pthread_t thread;
    pthread_create(
        &thread, nullptr,
        [](void* arg) -> void* {
            Probe* p = static_cast<Probe*>(arg);
            p->readResult = pthread_rwlock_tryrdlock(&p->provider->instanceLock);
            if (p->readResult == 0) {
                pthread_rwlock_unlock(&p->provider->instanceLock);
            }
            p->writeResult = pthread_rwlock_trywrlock(&p->provider->instanceLock);
            return nullptr;
        },
        &probe);
    pthread_join(thread, nullptr);
    EXPECT_EQ(probe.readResult, 0);
    EXPECT_NE(probe.writeResult, 0);
    EXPECT_EQ(provider.releaseLock(), 0);

    EXPECT_EQ(provider.getWriteLock(), 0);
    EXPECT_EQ(provider.releaseLock(), 0);
    provider.cleanupVexaHandler();
}

} // namespace
