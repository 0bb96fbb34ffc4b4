// Loads a provider library the way a CIM server does and drives every
// operation of the four provider interfaces through it: objects, exceptions
// and contexts cross the library boundary in both directions, and an
// indication arrives from the provider's own thread. Exit status 0 means
// every check held; each failed check is printed.
//
// Usage: conformance_driver <path to libConformanceProvider.so>

#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMIndicationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMMethodProvider.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <dlfcn.h>

#include <functional>
#include <iostream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

PEGASUS_USING_PEGASUS;
PEGASUS_USING_STD;

namespace {

int checks = 0;
int failures = 0;

void check(bool ok, const string& what) {
    ++checks;
    if (!ok) {
        ++failures;
        cerr << "FAILED: " << what << endl;
    }
}

string text(const String& s) { return string((const char*)s.getCString()); }

// Runs an operation that must fail with a CIMException of the given code.
void expectCIMError(const function<void()>& operation, CIMStatusCode code, const string& what) {
    try {
        operation();
        check(false, what + ": no exception");
    } catch (const CIMException& e) {
        check(e.getCode() == code, what + ": got " + cimStatusCodeToString(e.getCode()) + " (" +
                                       text(e.getMessage()) + ")");
    } catch (const Exception& e) {
        check(false, what + ": not a CIMException: " + text(e.getMessage()));
    }
}

// Keeps whatever an operation delivers, and counts the two life-cycle calls.
class Collector : public InstanceResponseHandler,
                  public ObjectPathResponseHandler,
                  public ObjectResponseHandler,
                  public MethodResultResponseHandler {
public:
    void processing() override { ++processingCalls; }
    void complete() override { ++completeCalls; }
    void deliver(const CIMInstance& instance) override { instances.append(instance); }
    void deliver(const Array<CIMInstance>& many) override { instances.appendArray(many); }
    void deliver(const CIMObjectPath& path) override { paths.append(path); }
    void deliver(const Array<CIMObjectPath>& many) override { paths.appendArray(many); }
    void deliver(const CIMObject& object) override { objects.append(object); }
    void deliver(const Array<CIMObject>& many) override { objects.appendArray(many); }
    void deliverParamValue(const CIMParamValue& value) override { outParameters.append(value); }
    void deliverParamValue(const Array<CIMParamValue>& many) override {
        outParameters.appendArray(many);
    }
    void deliver(const CIMValue& value) override { returnValues.append(value); }

    // One delivery and both life-cycle calls, as every operation here makes.
    bool completedWith(Uint32 delivered) const {
        return processingCalls == 1 && completeCalls == 1 &&
               instances.size() + paths.size() + objects.size() == delivered;
    }

    int processingCalls = 0;
    int completeCalls = 0;
    Array<CIMInstance> instances;
    Array<CIMObjectPath> paths;
    Array<CIMObject> objects;
    Array<CIMParamValue> outParameters;
    Array<CIMValue> returnValues;
};

class Alerts : public IndicationResponseHandler {
public:
    struct Received {
        CIMIndication indication;
        Array<CIMObjectPath> subscriptions;
        std::thread::id thread;
    };

    void processing() override {}
    void complete() override {}
    void deliver(const CIMIndication& indication) override {
        deliver(OperationContext(), indication);
    }
    void deliver(const Array<CIMIndication>& many) override { deliver(OperationContext(), many); }
    void deliver(const OperationContext& context, const Array<CIMIndication>& many) override {
        for (Uint32 i = 0; i < many.size(); i++) {
            deliver(context, many[i]);
        }
    }
    void deliver(const OperationContext& context, const CIMIndication& indication) override {
        Received entry{indication, Array<CIMObjectPath>(), std::this_thread::get_id()};
        if (context.contains(SubscriptionInstanceNamesContainer::NAME)) {
            entry.subscriptions = SubscriptionInstanceNamesContainer(
                                      context.get(SubscriptionInstanceNamesContainer::NAME))
                                      .getInstanceNames();
        }
        std::lock_guard<std::mutex> lock(_mutex);
        _received.push_back(entry);
    }

    std::vector<Received> received() {
        std::lock_guard<std::mutex> lock(_mutex);
        return _received;
    }

private:
    std::mutex _mutex;
    std::vector<Received> _received;
};

const String HOST = "conformance-host";
const CIMNamespaceName NS("root/sample");

// Paths as the server passes them: host, namespace, class and keys.
CIMObjectPath widgetRef(const String& name) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Name"), name, CIMKeyBinding::STRING));
    return CIMObjectPath(HOST, NS, CIMName("Sample_Widget"), keys);
}

CIMObjectPath classRef(const char* className) {
    return CIMObjectPath(HOST, NS, CIMName(className));
}

CIMObjectPath withoutHost(const CIMObjectPath& path) {
    return CIMObjectPath(String(), path.getNameSpace(), path.getClassName(), path.getKeyBindings());
}

CIMValue propertyValue(const CIMInstance& instance, const char* name) {
    const Uint32 position = instance.findProperty(CIMName(name));
    return position == PEG_NOT_FOUND ? CIMValue() : instance.getProperty(position).getValue();
}

struct Interfaces {
    CIMInstanceProvider* instances;
    CIMAssociationProvider* associations;
    CIMIndicationProvider* indications;
    CIMMethodProvider* methods;
};

CIMInstance fetch(Interfaces& p, const OperationContext& context, const CIMObjectPath& path) {
    Collector handler;
    p.instances->getInstance(context, path, false, false, CIMPropertyList(), handler);
    check(handler.completedWith(1), "getInstance " + text(path.toString()) + " delivers one");
    return handler.instances.size() == 1 ? handler.instances[0] : CIMInstance();
}

void checkInstances(Interfaces& p, const OperationContext& context) {
    Collector names;
    p.instances->enumerateInstanceNames(context, classRef("Sample_Widget"), names);
    check(names.completedWith(2), "two widgets are enumerated by name");
    check(names.paths.size() == 2 && names.paths[1] == withoutHost(widgetRef("beta")),
          "enumerated names carry namespace and key");

    Collector all;
    p.instances->enumerateInstances(context, classRef("Sample_Widget"), false, false,
                                    CIMPropertyList(), all);
    check(all.completedWith(2), "two widgets are enumerated");

    // The server's path has a host; the provider must still find the widget.
    const CIMInstance beta = fetch(p, context, widgetRef("beta"));
    check(!beta.isUninitialized() && propertyValue(beta, "Size") == CIMValue(Uint32(5)),
          "getInstance finds beta, size 5, through a host-qualified path");
    check(!beta.isUninitialized() && beta.getPath() == withoutHost(widgetRef("beta")),
          "delivered path names beta");

    expectCIMError(
        [&] {
            Collector handler;
            p.instances->getInstance(context, widgetRef("nobody"), false, false, CIMPropertyList(),
                                     handler);
        },
        CIM_ERR_NOT_FOUND, "getInstance of a missing widget");
    expectCIMError(
        [&] {
            Collector handler;
            p.instances->enumerateInstances(context, classRef("Sample_Gizmo"), false, false,
                                            CIMPropertyList(), handler);
        },
        CIM_ERR_NOT_SUPPORTED, "enumerateInstances of a foreign class");

    // The owner comes from the identity container the server put in the context.
    CIMInstance delta(CIMName("Sample_Widget"));
    delta.addProperty(CIMProperty(CIMName("Name"), CIMValue(String("delta"))));
    Collector created;
    p.instances->createInstance(context, classRef("Sample_Widget"), delta, created);
    check(created.completedWith(1) && created.paths[0] == withoutHost(widgetRef("delta")),
          "createInstance gives delta's path");
    check(propertyValue(fetch(p, context, widgetRef("delta")), "Owner") ==
              CIMValue(String("alice")),
          "created widget is owned by the requesting user");

    Collector deleted;
    p.instances->deleteInstance(context, widgetRef("delta"), deleted);
    check(deleted.completedWith(0), "deleteInstance completes");
    expectCIMError(
        [&] {
            Collector handler;
            p.instances->deleteInstance(context, widgetRef("delta"), handler);
        },
        CIM_ERR_NOT_FOUND, "deleting delta twice");
}

void checkAssociations(Interfaces& p, const OperationContext& context) {
    const CIMName link("Sample_WidgetInBin");
    const CIMObjectPath alpha = widgetRef("alpha");

    Collector binNames;
    p.associations->associatorNames(context, alpha, link, CIMName(), String(), String(), binNames);
    check(binNames.completedWith(1) && binNames.paths[0].getClassName() == CIMName("Sample_Bin"),
          "alpha's associator name is its bin");

    Collector bins;
    p.associations->associators(context, alpha, link, CIMName(), String(), String(), false, false,
                                CIMPropertyList(), bins);
    check(bins.completedWith(1) && bins.objects[0].isInstance() &&
              propertyValue(CIMInstance(bins.objects[0]), "Label") == CIMValue(String("Shelf")),
          "alpha's associator is the bin instance");

    Collector refs;
    p.associations->references(context, alpha, link, String(), false, false, CIMPropertyList(),
                               refs);
    check(refs.completedWith(1), "alpha has one reference");
    if (refs.objects.size() == 1) {
        const CIMValue widgetEnd = propertyValue(CIMInstance(refs.objects[0]), "Widget");
        check(widgetEnd == CIMValue(withoutHost(alpha)), "the Widget end refers to alpha");
    }

    Collector refNames;
    p.associations->referenceNames(context, alpha, link, String(), refNames);
    check(refNames.completedWith(1) && refNames.paths[0].getKeyBindings().size() == 2,
          "the reference name is keyed by both ends");
}

void checkMethods(Interfaces& p, const OperationContext& context) {
    Array<CIMParamValue> in;
    in.append(CIMParamValue("NewSize", CIMValue(Uint32(7))));
    Collector resized;
    p.methods->invokeMethod(context, widgetRef("alpha"), CIMName("Resize"), in, resized);
    check(resized.returnValues.size() == 1 && resized.returnValues[0] == CIMValue(Uint32(0)),
          "Resize returns Uint32 0 once");
    check(resized.outParameters.size() == 1 &&
              resized.outParameters[0].getParameterName() == "OldSize" &&
              resized.outParameters[0].getValue() == CIMValue(Uint32(3)),
          "Resize reports OldSize 3");
    check(propertyValue(fetch(p, context, widgetRef("alpha")), "Size") == CIMValue(Uint32(7)),
          "Resize changed alpha's size");

    expectCIMError(
        [&] {
            Collector handler;
            p.methods->invokeMethod(context, widgetRef("alpha"), CIMName("Explode"), in, handler);
        },
        CIM_ERR_METHOD_NOT_FOUND, "unknown method");
}

Uint32 raiseAlert(Interfaces& p, const OperationContext& context, const char* message) {
    Array<CIMParamValue> in;
    in.append(CIMParamValue("Message", CIMValue(String(message))));
    Collector handler;
    p.methods->invokeMethod(context, widgetRef("alpha"), CIMName("RaiseAlert"), in, handler);
    Uint32 result = 99;
    if (handler.returnValues.size() == 1) {
        handler.returnValues[0].get(result);
    }
    return result;
}

void checkIndications(Interfaces& p, const OperationContext& context) {
    check(raiseAlert(p, context, "too early") == 1, "no alert before indications are enabled");

    const CIMObjectPath subscription(
        "//conformance-host/root/PG_InterOp:CIM_IndicationSubscription."
        "Filter=\"root/PG_InterOp:CIM_IndicationFilter.Name=\\\"f\\\"\","
        "Handler=\"root/PG_InterOp:CIM_ListenerDestinationCIMXML.Name=\\\"h\\\"\"");
    Array<CIMObjectPath> alertClass;
    alertClass.append(CIMObjectPath(String(), NS, CIMName("Sample_Alert")));

    // As on server start-up: subscriptions first, then enable.
    p.indications->createSubscription(context, subscription, alertClass, CIMPropertyList(), 2);
    p.indications->modifySubscription(context, subscription, alertClass, CIMPropertyList(), 2);
    Alerts alerts;
    p.indications->enableIndications(alerts);
    check(raiseAlert(p, context, "disk full") == 0, "alert is raised");
    p.indications->disableIndications();
    check(raiseAlert(p, context, "too late") == 1, "no alert after indications are disabled");

    std::vector<Alerts::Received> received = alerts.received();
    check(received.size() == 1, "exactly one alert arrives");
    if (received.size() == 1) {
        const Alerts::Received& alert = received[0];
        check(alert.indication.getClassName() == CIMName("Sample_Alert") &&
                  alert.indication.getPath().getNameSpace() == NS,
              "alert class and namespace");
        check(propertyValue(alert.indication, "Message") == CIMValue(String("disk full")),
              "alert message");
        check(alert.thread != std::this_thread::get_id(), "alert delivered from another thread");
        check(alert.subscriptions.size() == 1 && alert.subscriptions[0] == subscription,
              "alert names its subscription");
    }

    p.indications->deleteSubscription(context, subscription, alertClass);
    expectCIMError([&] { p.indications->deleteSubscription(context, subscription, alertClass); },
                   CIM_ERR_NOT_FOUND, "deleting the subscription twice");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        cerr << "usage: " << argv[0] << " <provider library>" << endl;
        return 2;
    }
    void* library = dlopen(argv[1], RTLD_LAZY | RTLD_GLOBAL);
    if (!library) {
        cerr << "FAILED: dlopen: " << dlerror() << endl;
        return 1;
    }
    typedef CIMProvider* (*CreateProvider)(const String&);
    CreateProvider create =
        reinterpret_cast<CreateProvider>(dlsym(library, "PegasusCreateProvider"));
    if (!create) {
        cerr << "FAILED: entry point not found: " << dlerror() << endl;
        return 1;
    }

    try {
        CIMProvider* provider = create("ConformanceProvider");
        Interfaces p{dynamic_cast<CIMInstanceProvider*>(provider),
                     dynamic_cast<CIMAssociationProvider*>(provider),
                     dynamic_cast<CIMIndicationProvider*>(provider),
                     dynamic_cast<CIMMethodProvider*>(provider)};
        if (!(p.instances && p.associations && p.indications && p.methods)) {
            cerr << "FAILED: the provider does not implement all four interfaces" << endl;
            return 1;
        }
        CIMOMHandle cimom;
        provider->initialize(cimom);
        OperationContext context;
        context.insert(IdentityContainer("alice"));

        checkInstances(p, context);
        checkAssociations(p, context);
        checkMethods(p, context);
        checkIndications(p, context);

        provider->terminate();
    } catch (const Exception& e) {
        cerr << "FAILED: unexpected exception: " << e.getMessage() << endl;
        ++failures;
    }
    dlclose(library);

    if (failures != 0) {
        cerr << failures << " of " << checks << " checks failed" << endl;
        return 1;
    }
    cout << "conformance: all " << checks << " checks passed" << endl;
    return 0;
}
