// The configuration-service methods called with wbemcli cm against
// vexa-cimserver serving the lab cluster (examples/clusters/lab.json): each
// answers its return value and Message, and the enumeration follows.
#include <gtest/gtest.h>

#include "ServerSuite.h"

using namespace hosttest;

namespace {

class MethodsE2eTest : public ServerSuite {
protected:
    // wbemcli's answer after the service path: "<Method>: <rc>[, out-parameters]".
    static std::string call(const std::string& methodAndParameters) {
        CommandResult result = wbemcli(
            {"cm", server->url(":KOR_VEXA_ClusterConfigurationService"), methodAndParameters});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        std::string prefix = "KOR_VEXA_ClusterConfigurationService ";
        std::size_t at = result.out.find(prefix);
        return at == std::string::npos ? result.out
                                       : lines(result.out.substr(at + prefix.size()))[0];
    }
    static std::string filesets() {
        return wbemcli({"ei", server->url(":KOR_VEXA_Fileset"),
                        "Name,vexaFilesetStatus,vexaFilesetPath"})
            .out;
    }
};

const std::string DATA = "vexaFileSystem=KOR_VEXA_FileSystem.Name=\"data\"";

TEST_F(MethodsE2eTest, FilesetMethodsInTurnChangeTheEnumeration) {
    EXPECT_EQ(call("CreateFileset.vexaFilesetName=web," + DATA).substr(0, 36),
              "CreateFileset: 0, ObjectPath (refere");
    EXPECT_NE(filesets().find("Name=\"web\",vexaFilesetStatus=\"Unlinked\""), std::string::npos);

    EXPECT_EQ(call("LinkFileset.vexaJunctionPath=/data/web," + DATA +
                   ",vexaFileset=KOR_VEXA_Fileset.Name=\"web\""),
              "LinkFileset: 0, Message (string): Fileset web linked at /data/web.");
    EXPECT_NE(
        filesets().find("Name=\"web\",vexaFilesetStatus=\"Linked\",vexaFilesetPath=\"/data/web\""),
        std::string::npos);

    std::string edited = call("EditFileset.targetType=fileset,vexaFsetNameOrJnxnPath=web,"
                              "newFilesetName=www,vexaFileset=KOR_VEXA_Fileset.FSName=\"data\","
                              "Name=\"web\"");
    EXPECT_NE(edited.find("EditFileset: 0, ObjectPath (reference): "), std::string::npos) << edited;
    EXPECT_EQ(filesets().find("Name=\"web\""), std::string::npos);
    EXPECT_NE(filesets().find("Name=\"www\""), std::string::npos);

    EXPECT_EQ(call("UnlinkFileset.targetType=junction,vexaFsetNameOrJnxnPath=/data/web,"
                   "vexaFileset=KOR_VEXA_Fileset.FSName=\"data\",Name=\"www\""),
              "UnlinkFileset: 0, Message (string): Fileset www unlinked.");
    EXPECT_NE(filesets().find("Name=\"www\",vexaFilesetStatus=\"Unlinked\""), std::string::npos);

    EXPECT_EQ(call("DeleteFileset.vexaFileset=KOR_VEXA_Fileset.FSName=\"data\",Name=\"www\""),
              "DeleteFileset: 0, Message (string): Fileset www deleted.");
    EXPECT_EQ(filesets().find("Name=\"www\""), std::string::npos);
}

TEST_F(MethodsE2eTest, RefusedFilesetCallsReturnTheirCodeAndMessage) {
    EXPECT_EQ(call("CreateFileset.vexaFilesetComment=x"),
              "CreateFileset: 1, Message (string): Expected vexaFileSystemName field.");
    EXPECT_EQ(call("CreateFileset.vexaFilesetName=" + std::string(300, 'n') + "," + DATA),
              "CreateFileset: 1, Message (string): ERROR! Input parameter vexaFilesetName exceeds "
              "expected length ");
    EXPECT_EQ(call("CreateFileset.vexaFilesetName=home," + DATA),
              "CreateFileset: 10, Message (string): Fileset home already exists in file system "
              "data.");
    EXPECT_EQ(call("LinkFileset.vexaJunctionPath=/elsewhere/home," + DATA +
                   ",vexaFileset=KOR_VEXA_Fileset.Name=\"home\""),
              "LinkFileset: 11, Message (string): Fileset home is already linked at /data/home.");
    EXPECT_EQ(call("UnlinkFileset.targetType=Fileset,vexaFsetNameOrJnxnPath=home,"
                   "vexaFileset=KOR_VEXA_Fileset.FSName=\"data\",Name=\"home\""),
              "UnlinkFileset: 1, Message (string): ERROR! Input parameter targetType has invalid "
              "value: Fileset");
    EXPECT_EQ(call("EditFileset.targetType=fileset,vexaFsetNameOrJnxnPath=nope,newFilesetName=x,"
                   "vexaFileset=KOR_VEXA_Fileset.FSName=\"data\",Name=\"nope\""),
              "EditFileset: 9, Message (string): No fileset named nope in file system data.");
    EXPECT_EQ(
        call("DeleteFileset.vexaFileset=KOR_VEXA_Fileset.FSName=\"data\",Name=\"home\""),
        "DeleteFileset: 11, Message (string): Fileset home is linked at /data/home; unlink it "
        "first or force the deletion.");
    EXPECT_NE(filesets().find("Name=\"home\",vexaFilesetStatus=\"Linked\""), std::string::npos);
}

TEST_F(MethodsE2eTest, QuotaOwnershipAndAclCalls) {
    EXPECT_EQ(call("EditQuota.entityType=user,entityId=ann,newBlockSoftLimitKB=1000," + DATA),
              "EditQuota: 0, Message (string): Quota of user ann in file system data changed.");
    EXPECT_EQ(call("EditQuota.entityType=user,entityId=nobody," + DATA),
              "EditQuota: 16, Message (string): Unknown user nobody in file system data.");
    EXPECT_EQ(call("ChangeOwnerAndOrGroup.owner=ann,group=,isFilesetJunction=true,path=/data/home"),
              "ChangeOwnerAndOrGroup: 0");
    EXPECT_EQ(
        call("ChangeOwnerAndOrGroup.owner=ann,group=,isFilesetJunction=false,path=/data/home"),
        "ChangeOwnerAndOrGroup: 1");
    EXPECT_EQ(call("ChangeFilesetJnxnOwnership.vexaSourceFileset=KOR_VEXA_Fileset.FSName=\"data\","
                   "ID=\"1\",vexaTargetFileset=KOR_VEXA_Fileset.FSName=\"data\",ID=\"0\""),
              "ChangeFilesetJnxnOwnership: 0, Message (string): Owner of /data set to ann:root "
              "from /data/home.");
    EXPECT_EQ(call("ChangeFilesetJnxnACL.vexaSourceFileset=KOR_VEXA_Fileset.FSName=\"data\","
                   "ID=\"9\",vexaTargetFileset=KOR_VEXA_Fileset.FSName=\"data\",ID=\"0\""),
              "ChangeFilesetJnxnACL: 1, Message (string): ERROR! Could not find Fileset with ID 9 "
              "in file system data! ");
}

} // namespace
