// The library as a CIM server sees it: loaded with dlopen, asked for its
// provider by name, started and stopped.
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <dlfcn.h>

#include "cimProvider.h"
#include "processFlags.h"
#include "providerTestSupport.h"

PEGASUS_USING_PEGASUS;

namespace {

typedef CIMProvider* (*CreateProviderFunction)(const String&);

class ProviderFactoryTest : public ProviderTest {
protected:
    void SetUp() override {
        ProviderTest::SetUp();
        library = dlopen(VEXA_PROVIDER_LIBRARY, RTLD_LAZY | RTLD_GLOBAL);
        ASSERT_NE(library, nullptr) << dlerror();
        create = reinterpret_cast<CreateProviderFunction>(dlsym(library, "PegasusCreateProvider"));
        ASSERT_NE(create, nullptr) << dlerror();
    }
    // The library stays loaded: its threads may still run when a test ends,
    // as they would in a server that keeps the module.
    void* library = nullptr;
    CreateProviderFunction create = nullptr;
};

TEST_F(ProviderFactoryTest, CreatesAProviderForItsNameInAnyCaseAndNothingElse) {
    for (const char* name : {"VexaProvider", "vexaprovider", "VEXAPROVIDER", "vExApRoViDeR"}) {
        CIMProvider* provider = create(String(name));
        ASSERT_NE(provider, nullptr) << name;
        delete provider;
    }
    for (const char* name : {"", "Vexa", "VexaProvider2", " VexaProvider", "OtherProvider"}) {
        EXPECT_EQ(create(String(name)), nullptr) << "'" << name << "'";
    }
    // Each call makes its own object.
    CIMProvider* first = create(String("VexaProvider"));
    CIMProvider* second = create(String("VexaProvider"));
    EXPECT_NE(first, second);
    delete first;
    delete second;
}

TEST_F(ProviderFactoryTest, InitializesAgainstTheDemoClusterAndTerminates) {
    CIMProvider* provider = create(String("vexaprovider"));
    ASSERT_NE(provider, nullptr);
    CIMOMHandle cimom;
    provider->initialize(cimom);
    std::vector<std::string> lines = logLines();
    EXPECT_NE(findLine(lines, "L0 VexaProvider::initialize: exit"), -1);
    EXPECT_EQ(countLines(lines, "L2 VexaProvider::initialize: Couldn't initialize VexaHandler, "
                                "exiting..."),
              0);

    stopEventThread();
    dynamic_cast<VexaProvider*>(provider)->cleanupVexaHandler();
    provider->terminate();
    EXPECT_NE(findLine(logLines(), "L0 VexaProvider::terminate: enter"), -1);
}

TEST_F(ProviderFactoryTest, StopServerIsExportedWithCLinkage) {
    typedef void (*StopServerFunction)(int);
    auto stop = reinterpret_cast<StopServerFunction>(dlsym(library, "stopServer"));
    ASSERT_NE(stop, nullptr) << dlerror();
    storeFlag(KeepRunning, 1);
    stop(15);
    EXPECT_EQ(loadFlag(KeepRunning), 0);
}

} // namespace
