// The operations a WBEM client uses, driven with wbemcli against
// vexa-cimserver serving the lab cluster (examples/clusters/lab.json).
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>

#include "ServerSuite.h"

using namespace hosttest;

namespace {

class OperationsTest : public ServerSuite {
protected:
    // What wbemcli prints in front of an instance path it was given.
    static std::string printedPrefix(const std::string& className) {
        return "127.0.0.1:" + std::to_string(server->port()) + "/root/cimv2:" + className + ".";
    }

    // What wbemcli prints in front of an association's far end: the host
    // the client used, without the port.
    static std::string farPrefix(const std::string& className) {
        return "127.0.0.1/root/cimv2:" + className + ".";
    }
    // A far end as wbemcli prints it, made into a path it accepts again.
    static std::string reachable(const std::string& farEnd) {
        return "http://127.0.0.1:" + std::to_string(server->port()) +
               farEnd.substr(farEnd.find('/'));
    }
};

TEST_F(OperationsTest, EnumeratesTheClusterAndItsNodes) {
    CommandResult clusters = wbemcli({"ei", server->url(":KOR_VEXA_Cluster")});
    ASSERT_EQ(clusters.exitCode, 0) << clusters.err;
    std::vector<std::string> clusterLines = lines(clusters.out);
    ASSERT_EQ(clusterLines.size(), 1u) << clusters.out;
    EXPECT_EQ(clusterLines[0].rfind(printedPrefix("KOR_VEXA_Cluster"), 0), 0u) << clusterLines[0];
    EXPECT_NE(clusterLines[0].find("vexaClusterName=\"lab\""), std::string::npos)
        << clusterLines[0];

    CommandResult names = wbemcli({"ein", server->url(":KOR_VEXA_Node")});
    ASSERT_EQ(names.exitCode, 0) << names.err;
    std::vector<std::string> nodeNames = lines(names.out);
    ASSERT_EQ(nodeNames.size(), 2u) << names.out;
    for (const std::string& name : nodeNames) {
        EXPECT_EQ(name.rfind(printedPrefix("KOR_VEXA_Node"), 0), 0u) << name;
    }
}

TEST_F(OperationsTest, GetsEachEnumeratedInstanceByItsName) {
    CommandResult names = wbemcli({"ein", server->url(":KOR_VEXA_Node")});
    ASSERT_EQ(names.exitCode, 0) << names.err;
    CommandResult all = wbemcli({"ei", server->url(":KOR_VEXA_Node")});
    ASSERT_EQ(all.exitCode, 0) << all.err;
    for (const std::string& name : lines(names.out)) {
        // wbemcli prints host:port/namespace:Class.keys; it takes the same
        // after "http://".
        CommandResult one = wbemcli({"gi", "http://" + name});
        ASSERT_EQ(one.exitCode, 0) << name << "\n" << one.err;
        std::vector<std::string> got = lines(one.out);
        ASSERT_EQ(got.size(), 1u) << one.out;
        EXPECT_NE(all.out.find(got[0]), std::string::npos)
            << "gi and ei differ for " << name << "\n"
            << got[0];
    }
}

TEST_F(OperationsTest, GetInstanceOfAnUnknownNodeIsNotFound) {
    CommandResult missing =
        wbemcli({"gi", server->url(":KOR_VEXA_Node.CreationClassName=\"KOR_VEXA_Node\","
                                   "Name=\"lab+nosuchnode\"")});
    EXPECT_NE(missing.exitCode, 0);
    EXPECT_NE(missing.err.find("CIM_ERR_NOT_FOUND"), std::string::npos) << missing.err;
}

TEST_F(OperationsTest, ASuperclassEnumerationIncludesTheServedSubclasses) {
    CommandResult systems = wbemcli({"ein", server->url(":CIM_ComputerSystem")});
    ASSERT_EQ(systems.exitCode, 0) << systems.err;
    EXPECT_NE(systems.out.find(printedPrefix("KOR_VEXA_Cluster")), std::string::npos)
        << systems.out;
    EXPECT_NE(systems.out.find(printedPrefix("KOR_VEXA_Node")), std::string::npos) << systems.out;
}

TEST_F(OperationsTest, APropertyListKeepsOnlyTheNamedProperties) {
    CommandResult trimmed = wbemcli({"ei", server->url(":KOR_VEXA_Cluster"), "vexaClusterName"});
    ASSERT_EQ(trimmed.exitCode, 0) << trimmed.err;
    std::vector<std::string> got = lines(trimmed.out);
    ASSERT_EQ(got.size(), 1u) << trimmed.out;
    // Path, a space, then the one property.
    std::string properties = got[0].substr(got[0].find(' ') + 1);
    EXPECT_EQ(properties, "vexaClusterName=\"lab\"") << got[0];
}

TEST_F(OperationsTest, ClassesComeFromTheSchema) {
    // wbemcli prints a class as its properties; the methods are proven by
    // the method calls, which wbemcli makes only after reading them here.
    CommandResult service = wbemcli({"gc", server->url(":KOR_VEXA_ClusterConfigurationService")});
    ASSERT_EQ(service.exitCode, 0) << service.err;
    EXPECT_NE(service.out.find("CreationClassName="), std::string::npos) << service.out;
    CommandResult names = wbemcli({"ecn", server->url()});
    ASSERT_EQ(names.exitCode, 0) << names.err;
    EXPECT_NE(names.out.find("KOR_VEXA_Cluster"), std::string::npos) << names.out;

    CommandResult missing = wbemcli({"gc", server->url(":KOR_VEXA_NoSuchClass")});
    EXPECT_NE(missing.exitCode, 0);
    EXPECT_NE(missing.err.find("CIM_ERR_NOT_FOUND"), std::string::npos) << missing.err;
}

TEST_F(OperationsTest, AssociationTraversalAnswersWithFullPaths) {
    CommandResult names = wbemcli({"ein", server->url(":KOR_VEXA_Cluster")});
    ASSERT_EQ(names.exitCode, 0) << names.err;
    std::vector<std::string> clusters = lines(names.out);
    ASSERT_EQ(clusters.size(), 1u);
    const std::string cluster = "http://" + clusters[0];

    // Exactly the nodes, as ein names them (wbemcli prints far ends without the port).
    auto objects = [](const std::string& out) {
        std::vector<std::string> found;
        for (const std::string& line : lines(out))
            found.push_back(line.substr(line.find('/')));
        std::sort(found.begin(), found.end());
        return found;
    };
    CommandResult parts = wbemcli({"ain", "-ac", "KOR_VEXA_ComponentCS", cluster});
    ASSERT_EQ(parts.exitCode, 0) << parts.err;
    EXPECT_EQ(objects(parts.out), objects(wbemcli({"ein", server->url(":KOR_VEXA_Node")}).out));

    // Without an association class: every far end, each with its full path.
    for (const char* operation : {"ain", "ai"}) {
        CommandResult far = wbemcli({operation, cluster});
        ASSERT_EQ(far.exitCode, 0) << operation << "\n" << far.err;
        EXPECT_GE(lines(far.out).size(), 3u) << far.out;
        for (const std::string& line : lines(far.out)) {
            EXPECT_EQ(line.rfind("127.0.0.1/root/cimv2:", 0), 0u) << operation << ": " << line;
        }
    }
    // References are not served: either nothing or CIM_ERR_NOT_SUPPORTED.
    CommandResult references = wbemcli({"rin", cluster});
    if (references.exitCode != 0) {
        EXPECT_NE(references.err.find("CIM_ERR_NOT_SUPPORTED"), std::string::npos)
            << references.err;
    } else {
        EXPECT_EQ(references.out, "");
    }
}

// The demo cluster: its disks are there from the first pass, where the lab
// cluster's first disk read fails on purpose.
class DemoClusterWalkTest : public OperationsTest {
protected:
    static void SetUpTestSuite() { start({"--cluster-model", VEXA_DEMO_MODEL}); }
};

TEST_F(DemoClusterWalkTest, ClientsWalkFromAFileSystemToItsDisksServersAndQuotas) {
    CommandResult fileSystems = wbemcli({"ein", server->url(":KOR_VEXA_FileSystem")});
    ASSERT_EQ(fileSystems.exitCode, 0) << fileSystems.err;
    std::string at = "http://" + lines(fileSystems.out).at(0);
    const std::pair<const char*, const char*> steps[] = {
        {"KOR_VEXA_AssociatedStoragePool", "KOR_VEXA_StoragePool"},
        {"KOR_VEXA_StorageComponent", "KOR_VEXA_NSD"},
        {"KOR_VEXA_NodeServingNSD", "KOR_VEXA_Node"},
        {"KOR_VEXA_NodeAccessesNSD", "KOR_VEXA_NSD"},
        {"KOR_VEXA_NodeAccessesNSD", "KOR_VEXA_Node"},
        {"KOR_VEXA_Mounted", "KOR_VEXA_FileSystem"},
        {"KOR_VEXA_AssociatedFileset", "KOR_VEXA_Fileset"},
    };
    for (const auto& step : steps) {
        CommandResult far = wbemcli({"ain", "-ac", step.first, at});
        ASSERT_EQ(far.exitCode, 0) << step.first << "\n" << far.err;
        ASSERT_FALSE(lines(far.out).empty()) << step.first << " from " << at;
        const std::string farEnd = lines(far.out)[0];
        EXPECT_EQ(farEnd.rfind(farPrefix(step.second), 0), 0u) << step.first << ": " << farEnd;
        at = reachable(farEnd);
    }
    CommandResult quota = wbemcli({"ai", "-ac", "KOR_VEXA_AssociatedFilesetQuota", at});
    ASSERT_EQ(quota.exitCode, 0) << quota.err;
    ASSERT_EQ(lines(quota.out).size(), 1u) << quota.out;
    EXPECT_EQ(quota.out.rfind(farPrefix("KOR_VEXA_Fileset_Quota"), 0), 0u) << quota.out;
    EXPECT_NE(quota.out.find("vexaQuotaFileSystemName="), std::string::npos) << quota.out;
}

TEST_F(OperationsTest, ConcurrentClientsAllGetTheSameAnswer) {
    CommandResult reference = wbemcli({"ei", server->url(":CIM_ComputerSystem")});
    ASSERT_EQ(reference.exitCode, 0) << reference.err;
    std::vector<CommandResult> results(8);
    std::vector<std::thread> clients;
    for (CommandResult& result : results) {
        clients.emplace_back([&result] {
            result = wbemcli({"ei", server->url(":CIM_ComputerSystem")});
        });
    }
    for (std::thread& client : clients) {
        client.join();
    }
    for (const CommandResult& result : results) {
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_EQ(result.out, reference.out);
    }
}

TEST_F(OperationsTest, MethodCallsRoundTripWithTypedParameters) {
    std::string service = server->url(":KOR_VEXA_ClusterConfigurationService");
    // A boolean alone: the provider still answers its return value and Message.
    CommandResult call = wbemcli({"cm", service, "DeleteFileset.force=true"});
    EXPECT_EQ(call.exitCode, 0) << call.err;
    EXPECT_NE(call.out.find("DeleteFileset: 7, Message (string): File system  not found."),
              std::string::npos)
        << call.out;
    // A reference, strings and a uint64 reach the provider with their types.
    CommandResult typed =
        wbemcli({"cm", service,
                 "EditQuota.entityType=user,entityId=ann,newBlockHardLimitKB=2000000,"
                 "vexaFileSystem=KOR_VEXA_FileSystem.Name=\"data\""});
    EXPECT_NE(typed.out.find("EditQuota: 0, Message (string): Quota of user ann in file system "
                             "data changed."),
              std::string::npos)
        << typed.out << typed.err;

    CommandResult badValue = wbemcli({"cm", service, "ModifyNode.prefetchThreads=many"});
    EXPECT_NE(badValue.exitCode, 0);
    EXPECT_NE(badValue.err.find("CIM_ERR_INVALID_PARAMETER"), std::string::npos) << badValue.err;

    CommandResult unknown = wbemcli({"cm", service, "Explode"});
    EXPECT_NE(unknown.exitCode, 0);
    EXPECT_NE(unknown.err.find("CIM_ERR_METHOD_NOT_FOUND"), std::string::npos) << unknown.err;
}

TEST_F(OperationsTest, ModifyNodeAnswersWithAJobThatCompletes) {
    CommandResult call = wbemcli(
        {"cm", server->url(":KOR_VEXA_ClusterConfigurationService"), "ModifyNode.pagepool=4G"});
    ASSERT_EQ(call.exitCode, 0) << call.err;
    const std::string job = "root/cimv2:KOR_VEXA_ConcreteJob.InstanceID=";
    size_t at = call.out.find("ModifyNode: 0, Job (reference): " + job);
    ASSERT_NE(at, std::string::npos) << call.out;
    std::string path = lines(call.out.substr(call.out.find(job, at)))[0];

    // The task runs on the library's thread; the job reads 7 once it has.
    std::string state;
    for (int attempt = 0; attempt < 50 && state.find("JobState=7") == std::string::npos;
         attempt++) {
        if (attempt > 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        CommandResult fetched = wbemcli({"gi", server->url(path.substr(10))});
        ASSERT_EQ(fetched.exitCode, 0) << fetched.err;
        state = fetched.out;
    }
    EXPECT_NE(state.find("Name=\"qzchconfig\",JobState=7"), std::string::npos) << state;
}

} // namespace
