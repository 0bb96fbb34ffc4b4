// Loads a provider library the way a CIM server does and drives every
// operation of the four provider interfaces through it. Exit status 0 means
// every check held; each failed check is printed.
//
// Usage: conformance_driver <path to libConformanceProvider.so>

#include "CollectingHandlers.h"

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/LanguageTag.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMIndicationConsumerProvider.h>
#include <Pegasus/Provider/CIMIndicationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMMethodProvider.h>
#include <Pegasus/Provider/CIMOMHandle.h>
#include <Pegasus/Provider/CIMProvider.h>

#include <dlfcn.h>

#include <functional>
#include <iostream>
#include <set>
#include <string>

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

// Runs an operation that must fail with a CIMException of the given code.
void expectCIMError(const function<void()>& operation, CIMStatusCode code, const string& what) {
    try {
        operation();
        check(false, what + ": no exception");
    } catch (const CIMException& e) {
        check(e.getCode() == code, what + ": got " + cimStatusCodeToString(e.getCode()) + " (" +
                                       (const char*)e.getMessage().getCString() + ")");
    } catch (const Exception& e) {
        check(false, what + ": not a CIMException: " + (const char*)e.getMessage().getCString());
    }
}

const String HOST = "conformance-host";
const CIMNamespaceName NS("root/sample");

// Paths as the server passes them: host, namespace, class and keys.
CIMObjectPath widgetRef(const String& name) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Name"), name, CIMKeyBinding::STRING));
    return CIMObjectPath(HOST, NS, CIMName("Sample_Widget"), keys);
}

CIMObjectPath binRef(Uint32 id) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Id"), CIMValue(id)));
    return CIMObjectPath(HOST, NS, CIMName("Sample_Bin"), keys);
}

CIMObjectPath classRef(const char* className) {
    return CIMObjectPath(HOST, NS, CIMName(className));
}

CIMObjectPath withoutHost(const CIMObjectPath& path) {
    return CIMObjectPath(String(), path.getNameSpace(), path.getClassName(), path.getKeyBindings());
}

string text(const String& s) { return string((const char*)s.getCString()); }

// The value of a property of a delivered instance, or a null value.
CIMValue propertyValue(const CIMInstance& instance, const char* name) {
    const Uint32 position = instance.findProperty(CIMName(name));
    if (position == PEG_NOT_FOUND) {
        return CIMValue();
    }
    return instance.getProperty(position).getValue();
}

String stringProperty(const CIMInstance& instance, const char* name) {
    String value;
    const CIMValue cimValue = propertyValue(instance, name);
    if (cimValue.getType() == CIMTYPE_STRING && !cimValue.isArray()) {
        cimValue.get(value);
    }
    return value;
}

Uint32 uint32Property(const CIMInstance& instance, const char* name) {
    Uint32 value = 0xFFFFFFFF;
    const CIMValue cimValue = propertyValue(instance, name);
    if (cimValue.getType() == CIMTYPE_UINT32 && !cimValue.isArray()) {
        cimValue.get(value);
    }
    return value;
}

OperationContext requestContext() {
    OperationContext context;
    context.insert(IdentityContainer("alice"));
    AcceptLanguageList accepted;
    accepted.insert(LanguageTag("en-US"), 1.0f);
    context.insert(AcceptLanguageListContainer(accepted));
    context.insert(ContentLanguageListContainer(ContentLanguageList()));
    return context;
}

struct Interfaces {
    CIMProvider* provider;
    CIMInstanceProvider* instances;
    CIMAssociationProvider* associations;
    CIMIndicationProvider* indications;
    CIMMethodProvider* methods;
};

// A getInstance that must succeed; returns the single delivered instance.
CIMInstance fetch(Interfaces& p, const OperationContext& context, const CIMObjectPath& path) {
    InstanceCollector handler(true);
    handler.setContext(context);
    p.instances->getInstance(context, path, false, false, CIMPropertyList(), handler);
    check(handler.completeCalls == 1, "getInstance " + text(path.toString()) + " completes");
    return handler.instances.size() == 1 ? handler.instances[0] : CIMInstance();
}

void checkHandlerRules() {
    InstanceCollector none(true);
    expectCIMError([&] { none.complete(); }, CIM_ERR_FAILED, "getInstance handler with nothing");
    InstanceCollector two(true);
    two.deliver(CIMInstance(CIMName("Sample_Widget")));
    expectCIMError([&] { two.deliver(CIMInstance(CIMName("Sample_Widget"))); }, CIM_ERR_FAILED,
                   "getInstance handler with two instances");
    expectCIMError([&] { two.deliver(CIMInstance()); }, CIM_ERR_FAILED,
                   "handler with an uninitialised instance");
    MethodResultCollector method;
    expectCIMError([&] { method.deliver(CIMValue()); }, CIM_ERR_FAILED,
                   "method handler with a null return value");
}

void checkInstances(Interfaces& p, const OperationContext& context) {
    PathCollector names;
    p.instances->enumerateInstanceNames(context, classRef("Sample_Widget"), names);
    check(names.paths.size() == 3, "three widgets are enumerated by name");
    set<string> seen;
    for (Uint32 i = 0; i < names.paths.size(); i++) {
        const CIMObjectPath& path = names.paths[i];
        check(path.getNameSpace() == NS, "enumerated name carries the namespace");
        check(path.getKeyBindings().size() == 1, "enumerated name has one key");
        if (path.getKeyBindings().size() == 1) {
            seen.insert(text(path.getKeyBindings()[0].getValue()));
        }
    }
    check(seen == set<string>{"alpha", "beta", "gamma"}, "widget names alpha, beta, gamma");
    check(names.processingCalls == 1 && names.completeCalls == 1, "names: processing + complete");

    InstanceCollector bins;
    p.instances->enumerateInstances(context, classRef("Sample_Bin"), false, false,
                                    CIMPropertyList(), bins);
    check(bins.instances.size() == 2, "two bins are enumerated");
    for (Uint32 i = 0; i < bins.instances.size(); i++) {
        check(bins.instances[i].getPath().getKeyBindings().size() == 1,
              "enumerated bin has its key in the path");
        check(stringProperty(bins.instances[i], "Label").size() > 0, "bin has a label");
    }

    // The server's path has a host; the provider must still find the widget.
    const CIMInstance beta = fetch(p, context, widgetRef("beta"));
    check(!beta.isUninitialized(), "getInstance finds beta through a host-qualified path");
    if (!beta.isUninitialized()) {
        check(stringProperty(beta, "Color") == "blue", "beta is blue");
        check(uint32Property(beta, "Size") == 5, "beta has size 5 as a Uint32");
        check(beta.getClassName().equal(CIMName("sample_widget")), "class name compares nocase");
        check(withoutHost(widgetRef("beta")) == beta.getPath(), "delivered path names beta");
    }

    InstanceCollector missing(true);
    expectCIMError(
        [&] {
            p.instances->getInstance(context, widgetRef("nobody"), false, false, CIMPropertyList(),
                                     missing);
        },
        CIM_ERR_NOT_FOUND, "getInstance of a missing widget");
    expectCIMError(
        [&] {
            InstanceCollector handler;
            p.instances->enumerateInstances(context, classRef("Sample_Gizmo"), false, false,
                                            CIMPropertyList(), handler);
        },
        CIM_ERR_NOT_SUPPORTED, "enumerateInstances of a foreign class");

    // createInstance: exactly one path back, owner from the identity container.
    CIMInstance delta(CIMName("Sample_Widget"));
    delta.addProperty(CIMProperty(CIMName("Name"), CIMValue(String("delta"))));
    delta.addProperty(CIMProperty(CIMName("Color"), CIMValue(String("orange"))));
    delta.addProperty(CIMProperty(CIMName("Size"), CIMValue(Uint32(11))));
    delta.addProperty(CIMProperty(CIMName("BinId"), CIMValue(Uint32(2))));
    PathCollector created(true);
    p.instances->createInstance(context, classRef("Sample_Widget"), delta, created);
    check(created.paths.size() == 1 && created.completeCalls == 1, "createInstance gives a path");
    if (created.paths.size() == 1) {
        check(withoutHost(widgetRef("delta")) == created.paths[0], "created path names delta");
    }
    const CIMInstance stored = fetch(p, context, widgetRef("delta"));
    check(!stored.isUninitialized() && stringProperty(stored, "Owner") == "alice",
          "created widget is owned by the requesting user");
    expectCIMError(
        [&] {
            PathCollector again(true);
            p.instances->createInstance(context, classRef("Sample_Widget"), delta, again);
        },
        CIM_ERR_ALREADY_EXISTS, "creating delta twice");
    expectCIMError(
        [&] {
            CIMInstance wrong(CIMName("Sample_Widget"));
            wrong.addProperty(CIMProperty(CIMName("Name"), CIMValue(Uint32(4))));
            PathCollector handler(true);
            p.instances->createInstance(context, classRef("Sample_Widget"), wrong, handler);
        },
        CIM_ERR_INVALID_PARAMETER, "creating a widget with a numeric Name");

    // modifyInstance honours the property list.
    CIMInstance change(CIMName("Sample_Widget"));
    change.addProperty(CIMProperty(CIMName("Color"), CIMValue(String("purple"))));
    change.addProperty(CIMProperty(CIMName("Size"), CIMValue(Uint32(13))));
    Array<CIMName> onlySize;
    onlySize.append(CIMName("Size"));
    CompletionHandler modified;
    p.instances->modifyInstance(context, widgetRef("delta"), change, false,
                                CIMPropertyList(onlySize), modified);
    check(modified.completeCalls == 1, "modifyInstance completes");
    CIMInstance after = fetch(p, context, widgetRef("delta"));
    check(uint32Property(after, "Size") == 13, "listed property Size is modified");
    check(stringProperty(after, "Color") == "orange", "unlisted property Color is kept");
    CompletionHandler modifiedAll;
    p.instances->modifyInstance(context, widgetRef("delta"), change, false, CIMPropertyList(),
                                modifiedAll);
    after = fetch(p, context, widgetRef("delta"));
    check(stringProperty(after, "Color") == "purple", "a null property list modifies all");

    CompletionHandler deleted;
    p.instances->deleteInstance(context, widgetRef("delta"), deleted);
    check(deleted.completeCalls == 1, "deleteInstance completes");
    expectCIMError(
        [&] {
            CompletionHandler handler;
            p.instances->deleteInstance(context, widgetRef("delta"), handler);
        },
        CIM_ERR_NOT_FOUND, "deleting delta twice");
    expectCIMError(
        [&] {
            InstanceCollector handler(true);
            p.instances->getInstance(context, widgetRef("delta"), false, false, CIMPropertyList(),
                                     handler);
        },
        CIM_ERR_NOT_FOUND, "getInstance after delete");
}

void checkAssociations(Interfaces& p, const OperationContext& context) {
    const CIMName link("Sample_WidgetInBin");

    PathCollector binOfAlpha;
    p.associations->associatorNames(context, widgetRef("alpha"), link, CIMName(), String(),
                                    String(), binOfAlpha);
    check(binOfAlpha.paths.size() == 1, "alpha is associated with one bin");
    if (binOfAlpha.paths.size() == 1) {
        check(binOfAlpha.paths[0] == withoutHost(binRef(1)), "alpha's bin is bin 1");
    }

    ObjectCollector widgetsInDrawer;
    p.associations->associators(context, binRef(2), link, CIMName("Sample_Widget"), "Bin", "Widget",
                                false, false, CIMPropertyList(), widgetsInDrawer);
    check(widgetsInDrawer.objects.size() == 2, "bin 2 holds two widgets");
    for (Uint32 i = 0; i < widgetsInDrawer.objects.size(); i++) {
        check(widgetsInDrawer.objects[i].isInstance(), "associator is an instance");
        const CIMInstance widget(widgetsInDrawer.objects[i]);
        const String name = stringProperty(widget, "Name");
        check(name == "beta" || name == "gamma", "bin 2 holds beta and gamma");
    }
    check(widgetsInDrawer.completeCalls == 1, "associators completes");

    ObjectCollector wrongRole;
    p.associations->associators(context, widgetRef("alpha"), link, CIMName(), "Bin", String(),
                                false, false, CIMPropertyList(), wrongRole);
    check(wrongRole.objects.size() == 0, "role filter excludes alpha's bin");
    check(wrongRole.completeCalls == 1, "an empty result still completes");

    ObjectCollector refs;
    p.associations->references(context, widgetRef("alpha"), link, String(), false, false,
                               CIMPropertyList(), refs);
    check(refs.objects.size() == 1, "alpha has one reference");
    if (refs.objects.size() == 1) {
        const CIMInstance association(refs.objects[0]);
        const CIMValue widget = propertyValue(association, "Widget");
        const CIMValue bin = propertyValue(association, "Bin");
        check(widget.getType() == CIMTYPE_REFERENCE && bin.getType() == CIMTYPE_REFERENCE,
              "association ends are references");
        CIMObjectPath widgetEnd;
        CIMObjectPath binEnd;
        if (widget.getType() == CIMTYPE_REFERENCE && bin.getType() == CIMTYPE_REFERENCE) {
            widget.get(widgetEnd);
            bin.get(binEnd);
        }
        check(widgetEnd == withoutHost(widgetRef("alpha")), "Widget end is alpha");
        check(binEnd == withoutHost(binRef(1)), "Bin end is bin 1");
    }

    PathCollector refNames;
    p.associations->referenceNames(context, binRef(2), link, String(), refNames);
    check(refNames.paths.size() == 2, "bin 2 has two reference names");
    for (Uint32 i = 0; i < refNames.paths.size(); i++) {
        check(refNames.paths[i].getClassName() == link, "reference name is a link");
        check(refNames.paths[i].getKeyBindings().size() == 2, "reference name has two keys");
    }
}

void checkMethods(Interfaces& p, const OperationContext& context) {
    Array<CIMParamValue> in;
    in.append(CIMParamValue("NewSize", CIMValue(Uint32(7))));
    MethodResultCollector resized;
    p.methods->invokeMethod(context, widgetRef("alpha"), CIMName("Resize"), in, resized);
    check(resized.returnValues == 1 && resized.completeCalls == 1, "Resize returns once");
    check(resized.returnValue == CIMValue(Uint32(0)), "Resize returns Uint32 0");
    check(resized.out("OldSize") == CIMValue(Uint32(3)), "Resize reports OldSize 3");
    check(uint32Property(fetch(p, context, widgetRef("alpha")), "Size") == 7,
          "Resize changed alpha's size");

    expectCIMError(
        [&] {
            MethodResultCollector handler;
            p.methods->invokeMethod(context, widgetRef("alpha"), CIMName("Explode"), in, handler);
        },
        CIM_ERR_METHOD_NOT_FOUND, "unknown method");
    expectCIMError(
        [&] {
            Array<CIMParamValue> wrongType;
            wrongType.append(CIMParamValue("NewSize", CIMValue(String("7")), false));
            MethodResultCollector handler;
            p.methods->invokeMethod(context, widgetRef("alpha"), CIMName("Resize"), wrongType,
                                    handler);
        },
        CIM_ERR_INVALID_PARAMETER, "Resize with an untyped string");
    expectCIMError(
        [&] {
            MethodResultCollector handler;
            p.methods->invokeMethod(context, widgetRef("nobody"), CIMName("Resize"), in, handler);
        },
        CIM_ERR_NOT_FOUND, "Resize of a missing widget");
}

Uint32 raiseAlert(Interfaces& p, const OperationContext& context, const String& message,
                  Boolean* queued) {
    Array<CIMParamValue> in;
    in.append(CIMParamValue("Message", CIMValue(message)));
    in.append(CIMParamValue("Severity", CIMValue(Uint16(4))));
    MethodResultCollector handler;
    p.methods->invokeMethod(context, widgetRef("alpha"), CIMName("RaiseAlert"), in, handler);
    handler.out("Queued").get(*queued);
    Uint32 result = 99;
    handler.returnValue.get(result);
    return result;
}

void checkIndications(Interfaces& p, const OperationContext& context) {
    Boolean queued = true;
    check(raiseAlert(p, context, "too early", &queued) == 1 && !queued,
          "no alert is queued before indications are enabled");

    const CIMObjectPath subscription(
        "//conformance-host/root/PG_InterOp:CIM_IndicationSubscription."
        "Filter=\"root/PG_InterOp:CIM_IndicationFilter.Name=\\\"f\\\"\","
        "Handler=\"root/PG_InterOp:CIM_ListenerDestinationCIMXML.Name="
        "\\\"h\\\"\"");
    Array<CIMObjectPath> alertClass;
    alertClass.append(CIMObjectPath(String(), NS, CIMName("Sample_Alert")));
    Array<CIMObjectPath> otherClass;
    otherClass.append(CIMObjectPath(String(), NS, CIMName("Sample_Other")));

    // As on server start-up: subscriptions first, then enable.
    p.indications->createSubscription(context, subscription, alertClass, CIMPropertyList(), 2);
    expectCIMError(
        [&] {
            p.indications->createSubscription(context, subscription, otherClass, CIMPropertyList(),
                                              2);
        },
        CIM_ERR_NOT_SUPPORTED, "subscription for a class the provider does not raise");
    p.indications->modifySubscription(context, subscription, alertClass, CIMPropertyList(), 2);

    IndicationCollector indications;
    p.indications->enableIndications(indications);

    check(raiseAlert(p, context, "disk full", &queued) == 0 && queued, "alert is queued");
    check(indications.waitFor(1, std::chrono::seconds(5)), "alert arrives within 5 s");
    std::vector<IndicationCollector::Received> received = indications.received();
    if (!received.empty()) {
        const IndicationCollector::Received& first = received[0];
        check(first.indication.getClassName() == CIMName("Sample_Alert"), "alert class");
        check(first.indication.getPath().getNameSpace() == NS, "alert path has the namespace");
        check(first.indication.getPath().getKeyBindings().size() == 0, "alert path has no keys");
        check(stringProperty(first.indication, "Message") == "disk full", "alert message");
        check(first.thread != std::this_thread::get_id(), "alert delivered from another thread");
        check(first.hadContext && first.subscriptions.size() == 1, "alert names its subscription");
        if (first.subscriptions.size() == 1) {
            check(first.subscriptions[0] == subscription, "alert's subscription is ours");
        }
    }

    // Several clients raising alerts at once.
    const int threads = 4;
    const int perThread = 25;
    std::vector<std::thread> raisers;
    for (int t = 0; t < threads; t++) {
        raisers.emplace_back([&p, &context, t] {
            OperationContext mine(context);
            for (int i = 0; i < perThread; i++) {
                Boolean ok = false;
                String message("burst ");
                message.append(Char16(Uint16('a' + t)));
                raiseAlert(p, mine, message, &ok);
            }
        });
    }
    for (std::thread& raiser : raisers) {
        raiser.join();
    }
    check(indications.waitFor(1 + threads * perThread, std::chrono::seconds(10)),
          "every burst alert arrives");

    p.indications->disableIndications();
    check(raiseAlert(p, context, "too late", &queued) == 1 && !queued,
          "no alert is queued after indications are disabled");
    const size_t total = indications.received().size();
    check(total == size_t(1 + threads * perThread), "no alert arrives after disable");

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
        check(create("NoSuchProvider") == 0, "an unknown provider name gives null");
        Interfaces p;
        p.provider = create("conformanceprovider");
        if (!p.provider) {
            cerr << "FAILED: provider name is not matched case-insensitively" << endl;
            return 1;
        }
        p.instances = dynamic_cast<CIMInstanceProvider*>(p.provider);
        p.associations = dynamic_cast<CIMAssociationProvider*>(p.provider);
        p.indications = dynamic_cast<CIMIndicationProvider*>(p.provider);
        p.methods = dynamic_cast<CIMMethodProvider*>(p.provider);
        check(p.instances && p.associations && p.indications && p.methods,
              "provider implements all four interfaces");
        check(dynamic_cast<CIMIndicationConsumerProvider*>(p.provider) == 0,
              "provider is not an indication consumer");
        if (!(p.instances && p.associations && p.indications && p.methods)) {
            return 1;
        }

        CIMOMHandle cimom;
        p.provider->initialize(cimom);
        const OperationContext context = requestContext();

        checkHandlerRules();
        checkInstances(p, context);
        checkAssociations(p, context);
        checkMethods(p, context);
        checkIndications(p, context);

        p.provider->terminate();
    } catch (const CIMException& e) {
        cerr << "FAILED: unexpected CIMException " << cimStatusCodeToString(e.getCode()) << ": "
             << e.getMessage() << endl;
        ++failures;
    } catch (const Exception& e) {
        cerr << "FAILED: unexpected Exception: " << e.getMessage() << endl;
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
