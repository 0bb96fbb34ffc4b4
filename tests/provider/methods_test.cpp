// The configuration-service methods called as a client calls them, on the
// demo cluster: the answer, the cache right after, and the next refresh.
#include <qzantras/PollingHandler.h>

#include "readModelSupport.h"

PEGASUS_USING_PEGASUS;

namespace {

class MethodsTest : public ReadModelTest {
protected:
    void SetUp() override {
        ReadModelTest::SetUp();
        start();
    }

    RecordingMethodHandler call(const char* method, const Array<CIMParamValue>& in,
                                const char* className = "KOR_VEXA_ClusterConfigurationService") {
        RecordingMethodHandler handler;
        provider->invokeMethod(context, classPath(className), CIMName(method), in, handler);
        return handler;
    }
    static Uint32 rc(const RecordingMethodHandler& handler) {
        Uint32 value = 99;
        handler.returnValues[handler.returnValues.size() - 1].get(value);
        return value;
    }
    CIMObjectPath pathOf(const char* className, const char* name) {
        Array<CIMInstance> all = enumerate(className);
        for (Uint32 i = 0; i < all.size(); i++) {
            std::string key =
                className == std::string("KOR_VEXA_Fileset") ? "Name" : "vexaFileSystemName";
            if (text(all[i], key.c_str()) == name)
                return all[i].getPath();
        }
        return CIMObjectPath();
    }
    // The cached fileset of fs1 named name, as "<id> <status> <path>".
    std::string fileset(const char* name) {
        Array<CIMInstance> all = enumerate("KOR_VEXA_Fileset");
        for (Uint32 i = 0; i < all.size(); i++) {
            if (text(all[i], "FSName") == "fs1" && text(all[i], "Name") == name)
                return text(all[i], "vexaFilesetID") + " " + text(all[i], "vexaFilesetStatus") +
                       " " + text(all[i], "vexaFilesetPath");
        }
        return "<absent>";
    }
    static bool libraryCalled(const std::string& operation) {
        for (const std::string& line : logLines())
            if (line.find("PollingHandler::" + operation + ":") != std::string::npos)
                return true;
        return false;
    }
    static CIMParamValue p(const char* name, const CIMValue& value) {
        return CIMParamValue(name, value);
    }
    static Array<CIMParamValue> params(std::initializer_list<CIMParamValue> list) {
        Array<CIMParamValue> result;
        for (const CIMParamValue& each : list)
            result.append(each);
        return result;
    }
};

TEST_F(MethodsTest, FilesetLifecycleShowsInTheCacheAtOnceAndAfterRefresh) {
    CIMValue fs1(pathOf("KOR_VEXA_FileSystem", "fs1"));
    RecordingMethodHandler created =
        call("createfileset",
             params({p("vexaFileSystem", fs1), p("vexaFilesetName", CIMValue(String("web"))),
                     p("vexaFilesetComment", CIMValue(String("site")))}));
    EXPECT_EQ(created.order,
              (std::vector<std::string>{"processing", "params", "value", "complete"}));
    EXPECT_EQ(rc(created), 0u) << created.out("Message");
    EXPECT_NE(created.out("ObjectPath").find("Name=\"web\""), std::string::npos);
    EXPECT_EQ(fileset("web"), "4 Unlinked ");

    CIMValue web(pathOf("KOR_VEXA_Fileset", "web"));
    EXPECT_EQ(
        rc(call("LinkFileset", params({p("vexaFileSystem", fs1), p("vexaFileset", web),
                                       p("vexaJunctionPath", CIMValue(String("/qz/fs1/web")))}))),
        0u);
    EXPECT_EQ(fileset("web"), "4 Linked /qz/fs1/web");

    RecordingMethodHandler edited = call(
        "EditFileset", params({p("vexaFileset", web), p("targetType", CIMValue(String("fileset"))),
                               p("vexaFsetNameOrJnxnPath", CIMValue(String("web"))),
                               p("newFilesetName", CIMValue(String("www")))}));
    EXPECT_EQ(rc(edited), 0u) << edited.out("Message");
    EXPECT_EQ(fileset("web"), "<absent>");
    EXPECT_EQ(fileset("www"), "4 Linked /qz/fs1/web"); // same identifier, same junction

    CIMValue www(pathOf("KOR_VEXA_Fileset", "www"));
    EXPECT_EQ(rc(call("UnlinkFileset",
                      params({p("vexaFileset", www), p("targetType", CIMValue(String("junction"))),
                              p("vexaFsetNameOrJnxnPath", CIMValue(String("/qz/fs1/web")))}))),
              0u);
    EXPECT_EQ(fileset("www"), "4 Unlinked ");
    Uint32 count = enumerate("KOR_VEXA_Fileset").size();
    EXPECT_EQ(enumerate("KOR_VEXA_AssociatedFileset").size(), count);

    ageCache();
    EXPECT_EQ(fileset("www"), "4 Unlinked ");
    EXPECT_EQ(enumerate("KOR_VEXA_Fileset").size(), count);

    EXPECT_EQ(rc(call("DeleteFileset", params({p("vexaFileset", www)}))), 0u);
    EXPECT_EQ(fileset("www"), "<absent>");
    EXPECT_EQ(enumerate("KOR_VEXA_AssociatedFileset").size(), count - 1);
}

TEST_F(MethodsTest, FilesetRefusalsKeepTheCacheAndExplainThemselves) {
    CIMValue fs1(pathOf("KOR_VEXA_FileSystem", "fs1"));
    CIMValue projects(pathOf("KOR_VEXA_Fileset", "projects"));

    RecordingMethodHandler nothing = call("CreateFileset", Array<CIMParamValue>());
    EXPECT_EQ(rc(nothing), 1u);
    EXPECT_EQ(nothing.out("Message"),
              "Expected vexaFileSystemName field.\nExpected vexaFilesetName field.\n");

    RecordingMethodHandler exists = call(
        "CreateFileset",
        params({p("vexaFileSystem", fs1), p("vexaFilesetName", CIMValue(String("projects")))}));
    EXPECT_GT(rc(exists), 1u);
    EXPECT_NE(exists.out("Message").find("already exists"), std::string::npos);

    EXPECT_TRUE(libraryCalled("createFileSet"));
    qzsim::clearCapturedLog();
    RecordingMethodHandler overlong =
        call("CreateFileset",
             params({p("vexaFileSystem", fs1),
                     p("vexaFilesetName", CIMValue(String(std::string(300, 'x').c_str())))}));
    EXPECT_EQ(rc(overlong), 1u);
    EXPECT_EQ(overlong.out("Message"),
              "ERROR! Input parameter vexaFilesetName exceeds expected length \n");
    EXPECT_FALSE(libraryCalled("createFileSet"));

    RecordingMethodHandler linked = call("DeleteFileset", params({p("vexaFileset", projects)}));
    EXPECT_GT(rc(linked), 1u);
    EXPECT_EQ(fileset("projects"), "1 Linked /qz/fs1/projects");

    RecordingMethodHandler badType =
        call("UnlinkFileset",
             params({p("vexaFileset", projects), p("targetType", CIMValue(String("Fileset")))}));
    EXPECT_EQ(rc(badType), 1u);
    EXPECT_EQ(badType.out("Message"),
              "ERROR! Input parameter targetType has invalid value: Fileset\n");

    RecordingMethodHandler wrongCimType = call(
        "DeleteFileset", params({p("vexaFileset", projects), p("force", CIMValue(String("yes")))}));
    EXPECT_EQ(rc(wrongCimType), 1u);
    EXPECT_EQ(wrongCimType.out("Message"),
              "ERROR! Input parameter force is not of type boolean \n");

    CIMObjectPath keyless = pathOf("KOR_VEXA_Fileset", "projects");
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Name"), "projects", CIMKeyBinding::STRING));
    keyless.setKeyBindings(keys);
    RecordingMethodHandler lacksKey =
        call("DeleteFileset", params({p("vexaFileset", CIMValue(keyless))}));
    EXPECT_EQ(rc(lacksKey), 1u);
    EXPECT_EQ(lacksKey.out("Message"),
              "ERROR! Input parameter vexaFileset lacks the key FSName \n");

    RecordingMethodHandler outside = call(
        "LinkFileset", params({p("vexaFileSystem", fs1),
                               p("vexaFileset", CIMValue(pathOf("KOR_VEXA_Fileset", "archive"))),
                               p("vexaJunctionPath", CIMValue(String("/tmp/archive")))}));
    EXPECT_GT(rc(outside), 1u);
    EXPECT_EQ(fileset("archive"), "3 Unlinked ");

    RecordingMethodHandler otherClass =
        call("CreateFileset", Array<CIMParamValue>(), "KOR_VEXA_Cluster");
    EXPECT_EQ(otherClass.order, (std::vector<std::string>{"processing", "value", "complete"}));
    EXPECT_EQ(rc(otherClass), 0u);
}

TEST_F(MethodsTest, QuotaOwnershipAndAclMethods) {
    CIMValue fs1(pathOf("KOR_VEXA_FileSystem", "fs1"));
    RecordingMethodHandler quota = call(
        "EditQuota", params({p("vexaFileSystem", fs1), p("entityType", CIMValue(String("user"))),
                             p("entityId", CIMValue(String("alice"))),
                             p("newBlockHardLimitKB", CIMValue(Uint64(20000000))),
                             p("newFileSoftLimit", CIMValue(Uint64(7)))}));
    EXPECT_EQ(rc(quota), 0u) << quota.out("Message");
    Quota after;
    ASSERT_EQ(thePollingHandler->getQuota(2, "fs1", "alice", &after), 0);
    EXPECT_EQ(after.blockLimit, 20000000u);
    EXPECT_EQ(after.filesQuota, 0u); // the file soft limit is sent as zero
    EXPECT_EQ(after.filesLimit, 60000u);

    RecordingMethodHandler unmounted = call(
        "EditQuota", params({p("vexaFileSystem", CIMValue(pathOf("KOR_VEXA_FileSystem", "fs2"))),
                             p("entityType", CIMValue(String("fileset"))),
                             p("entityId", CIMValue(String("incoming")))}));
    EXPECT_EQ(rc(unmounted), 0u);
    EXPECT_NE(unmounted.out("Message").find("Please wait for provider to update it."),
              std::string::npos);

    RecordingMethodHandler noEntity = call(
        "EditQuota", params({p("vexaFileSystem", fs1), p("entityType", CIMValue(String("user")))}));
    EXPECT_EQ(rc(noEntity), 1u);
    EXPECT_EQ(noEntity.out("Message"), "ERROR! Expected non-null %s field. \nInternal provider "
                                       "error @ EditQuota, could not find the file system!");

    auto chown = [&](bool junction, const char* path) {
        return call("ChangeOwnerAndOrGroup",
                    params({p("owner", CIMValue(String("bob"))),
                            p("group", CIMValue(CIMTYPE_STRING, false)),
                            p("isFilesetJunction", CIMValue(Boolean(junction))),
                            p("path", CIMValue(String(path)))}));
    };
    RecordingMethodHandler notJunction = chown(false, "/qz/fs1/projects");
    ASSERT_EQ(notJunction.returnValues.size(), 2u);
    EXPECT_EQ(notJunction.returnValues[0].getType(), CIMTYPE_SINT32);
    EXPECT_EQ(rc(notJunction), 1u);
    RecordingMethodHandler owned = chown(true, "/qz/fs1/projects");
    EXPECT_EQ(owned.returnValues.size(), 1u);
    EXPECT_EQ(rc(owned), 0u);
    EXPECT_EQ(rc(call("ChangeOwnerAndOrGroup", params({p("owner", CIMValue(String("bob")))}))), 1u);

    CIMValue projects(pathOf("KOR_VEXA_Fileset", "projects"));
    CIMValue scratch(pathOf("KOR_VEXA_Fileset", "scratch"));
    for (const char* method : {"ChangeFilesetJnxnOwnership", "ChangeFilesetJnxnACL"}) {
        RecordingMethodHandler copied = call(
            method, params({p("vexaSourceFileset", projects), p("vexaTargetFileset", scratch)}));
        EXPECT_EQ(rc(copied), 0u) << method << copied.out("Message");
    }
    CIMObjectPath gone = pathOf("KOR_VEXA_Fileset", "projects");
    Array<CIMKeyBinding> keys = gone.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); i++)
        if (keys[i].getName().equal(CIMName("ID")))
            keys[i].setValue("77");
    gone.setKeyBindings(keys);
    RecordingMethodHandler missing =
        call("ChangeFilesetJnxnACL",
             params({p("vexaSourceFileset", CIMValue(gone)), p("vexaTargetFileset", scratch)}));
    EXPECT_EQ(rc(missing), 1u);
    EXPECT_EQ(missing.out("Message"),
              "ERROR! Could not find Fileset with ID 77 in file system fs1! \n");
}

} // namespace
