// A provider written the way third-party providers are: against the public
// provider interfaces only, serving all four operation interfaces from one
// object. Its model is as small as the driver's checks allow: widgets that
// all sit in bin 1, and an alert a widget raises through a method, delivered
// from a thread of the provider's own as indication providers do.
#include <Pegasus/Common/CIMIndication.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMIndicationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMMethodProvider.h>
#include <Pegasus/Provider/CIMOMHandle.h>
#include <Pegasus/Provider/ProviderException.h>

#include <mutex>
#include <thread>
#include <vector>

PEGASUS_USING_PEGASUS;

namespace {

const char WIDGET[] = "Sample_Widget";
const char BIN[] = "Sample_Bin";
const char WIDGET_IN_BIN[] = "Sample_WidgetInBin";

struct Widget {
    String name;
    Uint32 size;
    String owner;
};

CIMObjectPath widgetPath(const String& name, const CIMNamespaceName& nameSpace) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Name"), name, CIMKeyBinding::STRING));
    return CIMObjectPath(String(), nameSpace, CIMName(WIDGET), keys);
}

CIMObjectPath binPath(const CIMNamespaceName& nameSpace) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Id"), CIMValue(Uint32(1))));
    return CIMObjectPath(String(), nameSpace, CIMName(BIN), keys);
}

CIMInstance widgetInstance(const Widget& widget, const CIMNamespaceName& nameSpace) {
    CIMInstance instance{CIMName(WIDGET)};
    instance.addProperty(CIMProperty(CIMName("Name"), CIMValue(widget.name)));
    instance.addProperty(CIMProperty(CIMName("Size"), CIMValue(widget.size)));
    instance.addProperty(CIMProperty(CIMName("Owner"), CIMValue(widget.owner)));
    instance.setPath(widgetPath(widget.name, nameSpace));
    return instance;
}

CIMInstance binInstance(const CIMNamespaceName& nameSpace) {
    CIMInstance instance{CIMName(BIN)};
    instance.addProperty(CIMProperty(CIMName("Id"), CIMValue(Uint32(1))));
    instance.addProperty(CIMProperty(CIMName("Label"), CIMValue(String("Shelf"))));
    instance.setPath(binPath(nameSpace));
    return instance;
}

// The link of the widget a request names, without the request's host.
CIMInstance linkInstance(const CIMObjectPath& request) {
    const CIMNamespaceName nameSpace = request.getNameSpace();
    const CIMObjectPath widget(String(), nameSpace, request.getClassName(),
                               request.getKeyBindings());
    CIMInstance instance{CIMName(WIDGET_IN_BIN)};
    instance.addProperty(CIMProperty(CIMName("Widget"), CIMValue(widget), 0, CIMName(WIDGET)));
    instance.addProperty(
        CIMProperty(CIMName("Bin"), CIMValue(binPath(nameSpace)), 0, CIMName(BIN)));
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Widget"), CIMValue(widget)));
    keys.append(CIMKeyBinding(CIMName("Bin"), CIMValue(binPath(nameSpace))));
    instance.setPath(CIMObjectPath(String(), nameSpace, CIMName(WIDGET_IN_BIN), keys));
    return instance;
}

class ConformanceProvider : public CIMInstanceProvider,
                            public CIMAssociationProvider,
                            public CIMIndicationProvider,
                            public CIMMethodProvider {
public:
    ConformanceProvider() {
        _widgets.push_back(Widget{"alpha", 3, "system"});
        _widgets.push_back(Widget{"beta", 5, "system"});
    }

    void initialize(CIMOMHandle& cimom) override { _cimom = cimom; }
    void terminate() override { delete this; }

    void getInstance(const OperationContext&, const CIMObjectPath& path, Boolean, Boolean,
                     const CIMPropertyList&, InstanceResponseHandler& handler) override {
        std::lock_guard<std::mutex> lock(_mutex);
        const Widget* widget = find(path);
        // Completing without a delivery would reach the client as
        // CIM_ERR_FAILED; a missing instance must be CIM_ERR_NOT_FOUND.
        if (!widget) {
            throw CIMObjectNotFoundException(path.toString());
        }
        handler.processing();
        handler.deliver(widgetInstance(*widget, path.getNameSpace()));
        handler.complete();
    }

    void enumerateInstances(const OperationContext&, const CIMObjectPath& classPath, Boolean,
                            Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        onlyWidgets(classPath);
        std::lock_guard<std::mutex> lock(_mutex);
        Array<CIMInstance> instances;
        for (const Widget& widget : _widgets) {
            instances.append(widgetInstance(widget, classPath.getNameSpace()));
        }
        handler.processing();
        handler.deliver(instances);
        handler.complete();
    }

    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath& classPath,
                                ObjectPathResponseHandler& handler) override {
        onlyWidgets(classPath);
        std::lock_guard<std::mutex> lock(_mutex);
        handler.processing();
        for (const Widget& widget : _widgets) {
            handler.deliver(widgetPath(widget.name, classPath.getNameSpace()));
        }
        handler.complete();
    }

    void modifyInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&, Boolean,
                        const CIMPropertyList&, ResponseHandler&) override {
        throw CIMNotSupportedException("widgets are changed through Resize");
    }

    void createInstance(const OperationContext& context, const CIMObjectPath& classPath,
                        const CIMInstance& instance, ObjectPathResponseHandler& handler) override {
        Widget widget{String(), 1, String()};
        const Uint32 name = instance.findProperty(CIMName("Name"));
        if (name == PEG_NOT_FOUND) {
            throw CIMInvalidParameterException("a widget needs a Name");
        }
        instance.getProperty(name).getValue().get(widget.name);
        widget.owner = IdentityContainer(context.get(IdentityContainer::NAME)).getUserName();
        {
            std::lock_guard<std::mutex> lock(_mutex);
            _widgets.push_back(widget);
        }
        handler.processing();
        handler.deliver(widgetPath(widget.name, classPath.getNameSpace()));
        handler.complete();
    }

    void deleteInstance(const OperationContext&, const CIMObjectPath& path,
                        ResponseHandler& handler) override {
        std::lock_guard<std::mutex> lock(_mutex);
        const Widget* widget = find(path);
        if (!widget) {
            throw CIMObjectNotFoundException(path.toString());
        }
        _widgets.erase(_widgets.begin() + (widget - &_widgets[0]));
        handler.processing();
        handler.complete();
    }

    // Only the widget end is served: every widget's far end is bin 1.
    void associators(const OperationContext&, const CIMObjectPath& path, const CIMName&,
                     const CIMName&, const String&, const String&, Boolean, Boolean,
                     const CIMPropertyList&, ObjectResponseHandler& handler) override {
        handler.processing();
        if (knownWidget(path)) {
            handler.deliver(CIMObject(binInstance(path.getNameSpace())));
        }
        handler.complete();
    }

    void associatorNames(const OperationContext&, const CIMObjectPath& path, const CIMName&,
                         const CIMName&, const String&, const String&,
                         ObjectPathResponseHandler& handler) override {
        handler.processing();
        if (knownWidget(path)) {
            handler.deliver(binPath(path.getNameSpace()));
        }
        handler.complete();
    }

    void references(const OperationContext&, const CIMObjectPath& path, const CIMName&,
                    const String&, Boolean, Boolean, const CIMPropertyList&,
                    ObjectResponseHandler& handler) override {
        handler.processing();
        Array<CIMObject> links;
        if (knownWidget(path)) {
            links.append(CIMObject(linkInstance(path)));
        }
        handler.deliver(links);
        handler.complete();
    }

    void referenceNames(const OperationContext&, const CIMObjectPath& path, const CIMName&,
                        const String&, ObjectPathResponseHandler& handler) override {
        handler.processing();
        if (knownWidget(path)) {
            handler.deliver(linkInstance(path).getPath());
        }
        handler.complete();
    }

    void enableIndications(IndicationResponseHandler& handler) override {
        // Unloading would take a delivering thread away with the library.
        _cimom.disallowProviderUnload();
        std::lock_guard<std::mutex> lock(_mutex);
        _indications = &handler;
    }

    void disableIndications() override {
        {
            std::lock_guard<std::mutex> lock(_mutex);
            _indications = nullptr;
        }
        _cimom.allowProviderUnload();
    }

    void createSubscription(const OperationContext&, const CIMObjectPath& subscription,
                            const Array<CIMObjectPath>&, const CIMPropertyList&, Uint16) override {
        std::lock_guard<std::mutex> lock(_mutex);
        _subscriptions.append(subscription);
    }

    void modifySubscription(const OperationContext&, const CIMObjectPath&,
                            const Array<CIMObjectPath>&, const CIMPropertyList&, Uint16) override {}

    void deleteSubscription(const OperationContext&, const CIMObjectPath& subscription,
                            const Array<CIMObjectPath>&) override {
        std::lock_guard<std::mutex> lock(_mutex);
        for (Uint32 i = 0; i < _subscriptions.size(); i++) {
            if (_subscriptions[i] == subscription) {
                _subscriptions.remove(i);
                return;
            }
        }
        throw CIMObjectNotFoundException(subscription.toString());
    }

    void invokeMethod(const OperationContext&, const CIMObjectPath& path, const CIMName& method,
                      const Array<CIMParamValue>& in,
                      MethodResultResponseHandler& handler) override {
        if (method.equal(CIMName("Resize"))) {
            Uint32 oldSize = 0;
            {
                std::lock_guard<std::mutex> lock(_mutex);
                Widget* widget = find(path);
                if (!widget || in.size() != 1) {
                    throw CIMInvalidParameterException("Resize takes NewSize of a known widget");
                }
                oldSize = widget->size;
                in[0].getValue().get(widget->size);
            }
            handler.processing();
            handler.deliverParamValue(CIMParamValue("OldSize", CIMValue(oldSize)));
            handler.deliver(CIMValue(Uint32(0)));
            handler.complete();
            return;
        }
        if (method.equal(CIMName("RaiseAlert"))) {
            const bool raised = raise(in.size() == 1 ? in[0].getValue() : CIMValue());
            handler.processing();
            handler.deliver(CIMValue(Uint32(raised ? 0 : 1)));
            handler.complete();
            return;
        }
        throw CIMMethodNotFoundException(method.getString());
    }

private:
    static void onlyWidgets(const CIMObjectPath& classPath) {
        if (!classPath.getClassName().equal(CIMName(WIDGET))) {
            throw CIMNotSupportedException(classPath.getClassName().getString());
        }
    }

    // Requests arrive with host and namespace; widgets are kept without.
    static CIMObjectPath local(const CIMObjectPath& path) {
        return CIMObjectPath(String(), CIMNamespaceName(), path.getClassName(),
                             path.getKeyBindings());
    }

    Widget* find(const CIMObjectPath& path) {
        for (Widget& widget : _widgets) {
            if (widgetPath(widget.name, CIMNamespaceName()) == local(path)) {
                return &widget;
            }
        }
        return nullptr;
    }

    bool knownWidget(const CIMObjectPath& path) {
        std::lock_guard<std::mutex> lock(_mutex);
        return find(path) != nullptr;
    }

    // Delivers the alert from a thread of its own, with the subscriptions
    // it is meant for; false when indications are not enabled.
    bool raise(const CIMValue& message) {
        IndicationResponseHandler* handler = nullptr;
        OperationContext context;
        {
            std::lock_guard<std::mutex> lock(_mutex);
            handler = _indications;
            context.insert(SubscriptionInstanceNamesContainer(_subscriptions));
        }
        if (!handler) {
            return false;
        }
        CIMIndication alert{CIMName("Sample_Alert")};
        alert.addProperty(CIMProperty(CIMName("Message"), message));
        // The server routes an indication by the namespace of its path.
        alert.setPath(
            CIMObjectPath(String(), CIMNamespaceName("root/sample"), CIMName("Sample_Alert")));
        std::thread([&] { handler->deliver(context, alert); }).join();
        return true;
    }

    CIMOMHandle _cimom;
    std::mutex _mutex;
    std::vector<Widget> _widgets;
    IndicationResponseHandler* _indications = nullptr;
    Array<CIMObjectPath> _subscriptions;
};

} // namespace

// The symbol a CIM server looks up after loading the library.
extern "C" PEGASUS_EXPORT CIMProvider* PegasusCreateProvider(const String& providerName) {
    if (String::equalNoCase(providerName, "ConformanceProvider")) {
        return new ConformanceProvider();
    }
    return 0;
}
