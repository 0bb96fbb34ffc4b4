// The instance read operations as a client meets them: namespaces, classes
// the cache does not serve, and look-ups that ignore host and namespace.
#include <stdexcept>

#include "readModelSupport.h"
#include "smallClusterModels.h"

PEGASUS_USING_PEGASUS;

namespace {

class InstanceOperationsTest : public ReadModelTest {
protected:
    void SetUp() override {
        ReadModelTest::SetUp();
        start(SMALL_CLUSTER);
        qzsim::clearCapturedLog();
    }
};

TEST_F(InstanceOperationsTest, AnotherNamespaceGetsNoAnswerAtAll) {
    RecordingInstanceHandler instances;
    provider->enumerateInstances(context, classPath("KOR_VEXA_Node", "root/interop"), false, false,
                                 CIMPropertyList(), instances);
    RecordingPathHandler paths;
    provider->enumerateInstanceNames(context, classPath("KOR_VEXA_Node", "root/PG_InterOp"), paths);
    CIMObjectPath node = enumerate("KOR_VEXA_Node")[0].getPath();
    node.setNameSpace(CIMNamespaceName("root/other"));
    RecordingInstanceHandler single;
    qzsim::clearCapturedLog();
    provider->getInstance(context, node, false, false, CIMPropertyList(), single);

    EXPECT_EQ(instances.calls.total(), 0);
    EXPECT_EQ(paths.calls.total(), 0);
    EXPECT_EQ(single.calls.total(), 0);
    EXPECT_NE(findLine(logLines(), "L2 VexaProvider::getInstance: root/other not supported."), -1);
}

TEST_F(InstanceOperationsTest, NamespaceAndClassNamesIgnoreCase) {
    RecordingInstanceHandler handler;
    provider->enumerateInstances(context, classPath("kor_vexa_node", "ROOT/CIMV2"), false, false,
                                 CIMPropertyList(), handler);
    EXPECT_EQ(handler.instances.size(), 2u);
}

TEST_F(InstanceOperationsTest, UnservedClassesCompleteEmptyAndAreLogged) {
    EXPECT_EQ(enumerate("KOR_VEXA_User_Quota").size(), 0u);
    EXPECT_EQ(enumerate("KOR_VEXA_ConcreteJob").size(), 0u);
    EXPECT_EQ(names("KOR_VEXA_Policy").size(), 0u);
    std::vector<std::string> lines = logLines();
    EXPECT_NE(findLine(lines, "L2 VexaProvider::enumerateInstances: KOR_VEXA_User_Quota is not "
                              "supported."),
              -1);
    EXPECT_NE(findLine(lines, "L2 VexaProvider::enumerateInstances: KOR_VEXA_ConcreteJob is not "
                              "supported."),
              -1);
    EXPECT_NE(
        findLine(lines,
                 "L2 VexaProvider::enumerateInstanceNames: KOR_VEXA_Policy is not supported."),
        -1);
}

TEST_F(InstanceOperationsTest, GetInstanceIgnoresTheClientsHostAndNamespace) {
    CIMObjectPath path = enumerate("KOR_VEXA_FileSystem")[0].getPath();
    CIMObjectPath asSent(String("mgmt.example.com"), CIMNamespaceName("root/cimv2"),
                         path.getClassName(), path.getKeyBindings());
    Array<CIMInstance> got = get(asSent);
    ASSERT_EQ(got.size(), 1u);
    EXPECT_EQ(text(got[0], "Name"), "data0");
}

TEST_F(InstanceOperationsTest, GetInstanceOfAnUnknownObjectCompletesEmpty) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("CreationClassName"), String("KOR_VEXA_Node"),
                              CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("Name"), String("small+n9"), CIMKeyBinding::STRING));
    EXPECT_EQ(get(CIMObjectPath(String(), NAMESPACE, CIMName("KOR_VEXA_Node"), keys)).size(), 0u);
    EXPECT_NE(findLine(logLines(), "L2 VexaProvider::getVexaInstance: Not found."), -1);

    // Policies are served by enumeration only.
    provider->policies.append(provider->nodes[0]);
    CIMObjectPath policy = provider->nodes[0].getPath();
    policy.setClassName(CIMName("KOR_VEXA_Policy"));
    EXPECT_EQ(get(policy).size(), 0u);
    EXPECT_NE(
        findLine(logLines(), "L2 VexaProvider::getInstance: KOR_VEXA_Policy is not supported."),
        -1);
}

TEST_F(InstanceOperationsTest, JobsAreFoundOnlyByPath) {
    CIMInstance job(CIMName("KOR_VEXA_ConcreteJob"));
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("InstanceID"), String("job-1"), CIMKeyBinding::STRING));
    CIMObjectPath jobPath(String(), NAMESPACE, CIMName("KOR_VEXA_ConcreteJob"), keys);
    job.setPath(jobPath);
    provider->concreteJobs.append(job);

    EXPECT_EQ(get(jobPath).size(), 1u);
    EXPECT_EQ(enumerate("KOR_VEXA_ConcreteJob").size(), 0u);
    EXPECT_EQ(names("KOR_VEXA_ConcreteJob").size(), 0u);
}

// A failure inside a request (here the handler's own, with a text that is
// no UTF-8) reaches the server as a CIM error and leaves no lock held.
TEST_F(InstanceOperationsTest, AFailureInsideARequestIsACimErrorAndReleasesTheLock) {
    struct ThrowingHandler : RecordingInstanceHandler {
        using RecordingInstanceHandler::deliver;
        void deliver(const CIMInstance&) override { throw std::out_of_range("\xff index"); }
    } throwing;
    try {
        provider->enumerateInstances(context, classPath("KOR_VEXA_Node"), false, false,
                                     CIMPropertyList(), throwing);
        ADD_FAILURE() << "no error";
    } catch (const CIMException& e) {
        EXPECT_EQ(e.getCode(), CIM_ERR_FAILED);
        EXPECT_EQ(e.getMessage(), "? index");
    }
    ageCache();
    EXPECT_EQ(enumerate("KOR_VEXA_Node").size(), 2u);
}

} // namespace
