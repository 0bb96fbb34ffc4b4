// A provider started on a simulated cluster and driven through its CIM read
// operations, as a CIM server would call them.
#ifndef VEXA_TESTS_READMODELSUPPORT_H
#define VEXA_TESTS_READMODELSUPPORT_H

#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <qzsim/SimControl.h>

#include <string>

#include "cimProvider.h"
#include "providerTestSupport.h"
#include "recordingHandlers.h"

class ReadModelTest : public ProviderTest {
protected:
    // Starts the provider on `modelJson`, or on the built-in demo cluster
    // when it is empty.
    void start(const std::string& modelJson = std::string()) {
        if (!modelJson.empty()) {
            std::string error;
            ASSERT_EQ(qzsim::loadModelFromString(modelJson, &error), 0) << error;
        }
        provider->initialize(cimom);
    }

    void TearDown() override {
        stopEventThread();
        if (provider->clusterInfo != nullptr)
            provider->cleanupVexaHandler();
        delete provider;
        ProviderTest::TearDown();
    }

    static Pegasus::CIMObjectPath classPath(const char* className,
                                            const char* nameSpace = "root/cimv2") {
        return Pegasus::CIMObjectPath(Pegasus::String(), Pegasus::CIMNamespaceName(nameSpace),
                                      Pegasus::CIMName(className));
    }

    Pegasus::Array<Pegasus::CIMInstance> enumerate(const char* className) {
        RecordingInstanceHandler handler;
        provider->enumerateInstances(context, classPath(className), false, false,
                                     Pegasus::CIMPropertyList(), handler);
        EXPECT_EQ(handler.calls.processing, 1);
        EXPECT_EQ(handler.calls.complete, 1);
        return handler.instances;
    }

    Pegasus::Array<Pegasus::CIMObjectPath> names(const char* className) {
        RecordingPathHandler handler;
        provider->enumerateInstanceNames(context, classPath(className), handler);
        EXPECT_EQ(handler.calls.complete, 1);
        return handler.paths;
    }

    Pegasus::Array<Pegasus::CIMInstance> get(const Pegasus::CIMObjectPath& path) {
        RecordingInstanceHandler handler;
        provider->getInstance(context, path, false, false, Pegasus::CIMPropertyList(), handler);
        EXPECT_EQ(handler.calls.processing, 1);
        EXPECT_EQ(handler.calls.complete, 1);
        return handler.instances;
    }

    // Makes the next request find the cache stale, as if three minutes had
    // passed since the last pass; the user and group clock is left alone.
    void ageCache() { provider->lastRefresh.tv_sec -= 181; }

    static std::string text(const Pegasus::CIMInstance& instance, const char* property) {
        Pegasus::Uint32 at = instance.findProperty(Pegasus::CIMName(property));
        if (at == Pegasus::PEG_NOT_FOUND)
            return "<missing " + std::string(property) + ">";
        return (const char*)instance.getProperty(at).getValue().toString().getCString();
    }

    VexaProvider* provider = new VexaProvider();
    Pegasus::CIMOMHandle cimom;
    Pegasus::OperationContext context;
};

#endif
