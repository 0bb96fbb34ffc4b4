#include "ConformanceProvider.h"

#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/ProviderException.h>

namespace {

String requestingUser(const OperationContext& context) {
    try {
        IdentityContainer identity(context.get(IdentityContainer::NAME));
        return identity.getUserName();
    } catch (const Exception&) {
        return String("unknown");
    }
}

bool isClass(const CIMName& name, const char* className) {
    return !name.isNull() && name.equal(CIMName(className));
}

bool roleMatches(const String& wanted, const char* role) {
    return wanted.size() == 0 || String::equalNoCase(wanted, role);
}

bool classMatches(const CIMName& wanted, const char* className) {
    return wanted.isNull() || wanted.equal(CIMName(className));
}

// Reads a property of a client-supplied instance. False when it is absent or
// null; a value of the wrong type is the client's mistake.
template <class T>
bool readProperty(const CIMInstance& instance, const char* name, T& value) {
    const Uint32 position = instance.findProperty(CIMName(name));
    if (position == PEG_NOT_FOUND) {
        return false;
    }
    const CIMValue cimValue = instance.getProperty(position).getValue();
    if (cimValue.isNull()) {
        return false;
    }
    try {
        cimValue.get(value);
    } catch (const TypeMismatchException&) {
        throw CIMInvalidParameterException(String("wrong type for property ") + String(name));
    }
    return true;
}

template <class T>
bool readParameter(const Array<CIMParamValue>& parameters, const char* name, T& value) {
    for (Uint32 i = 0; i < parameters.size(); i++) {
        if (!String::equalNoCase(parameters[i].getParameterName(), name)) {
            continue;
        }
        const CIMValue cimValue = parameters[i].getValue();
        if (cimValue.isNull()) {
            return false;
        }
        try {
            cimValue.get(value);
        } catch (const TypeMismatchException&) {
            throw CIMInvalidParameterException(String("wrong type for parameter ") + String(name));
        }
        return true;
    }
    return false;
}

} // namespace

ConformanceProvider::ConformanceProvider() {}

ConformanceProvider::~ConformanceProvider() {}

void ConformanceProvider::initialize(CIMOMHandle& cimom) { _cimom = cimom; }

void ConformanceProvider::terminate() {
    _alerts.stop();
    delete this;
}

void ConformanceProvider::getInstance(const OperationContext&,
                                      const CIMObjectPath& instanceReference, Boolean, Boolean,
                                      const CIMPropertyList&, InstanceResponseHandler& handler) {
    const CIMNamespaceName nameSpace = instanceReference.getNameSpace();
    CIMInstance found;
    {
        std::lock_guard<std::mutex> lock(_model.mutex);
        if (isClass(instanceReference.getClassName(), WIDGET_CLASS)) {
            if (Widget* widget = _model.findWidget(instanceReference)) {
                found = widgetInstance(*widget, nameSpace);
            }
        } else if (isClass(instanceReference.getClassName(), BIN_CLASS)) {
            if (Bin* bin = _model.findBin(instanceReference)) {
                found = binInstance(*bin, nameSpace);
            }
        } else {
            throw CIMNotSupportedException(instanceReference.getClassName().getString());
        }
    }
    // Completing without a delivery would reach the client as CIM_ERR_FAILED;
    // a missing instance must be CIM_ERR_NOT_FOUND.
    if (found.isUninitialized()) {
        throw CIMObjectNotFoundException(instanceReference.toString());
    }
    handler.processing();
    handler.deliver(found);
    handler.complete();
}

void ConformanceProvider::enumerateInstances(const OperationContext&,
                                             const CIMObjectPath& classReference, Boolean, Boolean,
                                             const CIMPropertyList&,
                                             InstanceResponseHandler& handler) {
    const CIMNamespaceName nameSpace = classReference.getNameSpace();
    Array<CIMInstance> instances;
    {
        std::lock_guard<std::mutex> lock(_model.mutex);
        if (isClass(classReference.getClassName(), WIDGET_CLASS)) {
            for (const Widget& widget : _model.widgets) {
                instances.append(widgetInstance(widget, nameSpace));
            }
        } else if (isClass(classReference.getClassName(), BIN_CLASS)) {
            for (const Bin& bin : _model.bins) {
                instances.append(binInstance(bin, nameSpace));
            }
        } else {
            throw CIMNotSupportedException(classReference.getClassName().getString());
        }
    }
    handler.processing();
    handler.deliver(instances);
    handler.complete();
}

void ConformanceProvider::enumerateInstanceNames(const OperationContext&,
                                                 const CIMObjectPath& classReference,
                                                 ObjectPathResponseHandler& handler) {
    const CIMNamespaceName nameSpace = classReference.getNameSpace();
    handler.processing();
    {
        std::lock_guard<std::mutex> lock(_model.mutex);
        if (isClass(classReference.getClassName(), WIDGET_CLASS)) {
            for (const Widget& widget : _model.widgets) {
                handler.deliver(widgetPath(widget.name, nameSpace));
            }
        } else if (isClass(classReference.getClassName(), BIN_CLASS)) {
            for (const Bin& bin : _model.bins) {
                handler.deliver(binPath(bin.id, nameSpace));
            }
        } else {
            throw CIMNotSupportedException(classReference.getClassName().getString());
        }
    }
    handler.complete();
}

void ConformanceProvider::modifyInstance(const OperationContext&,
                                         const CIMObjectPath& instanceReference,
                                         const CIMInstance& instanceObject, Boolean,
                                         const CIMPropertyList& propertyList,
                                         ResponseHandler& handler) {
    if (!isClass(instanceReference.getClassName(), WIDGET_CLASS)) {
        throw CIMNotSupportedException("only widgets can be modified");
    }
    handler.processing();
    {
        std::lock_guard<std::mutex> lock(_model.mutex);
        Widget* widget = _model.findWidget(instanceReference);
        if (!widget) {
            throw CIMObjectNotFoundException(instanceReference.toString());
        }
        String color;
        if (propertyList.useThisProperty(CIMName("Color")) &&
            readProperty(instanceObject, "Color", color)) {
            widget->color = color;
        }
        Uint32 size = 0;
        if (propertyList.useThisProperty(CIMName("Size")) &&
            readProperty(instanceObject, "Size", size)) {
            widget->size = size;
        }
    }
    handler.complete();
}

void ConformanceProvider::createInstance(const OperationContext& context,
                                         const CIMObjectPath& instanceReference,
                                         const CIMInstance& instanceObject,
                                         ObjectPathResponseHandler& handler) {
    if (!isClass(instanceReference.getClassName(), WIDGET_CLASS)) {
        throw CIMNotSupportedException("only widgets can be created");
    }
    Widget widget;
    widget.size = 1;
    widget.binId = 1;
    if (!readProperty(instanceObject, "Name", widget.name) || widget.name.size() == 0) {
        throw CIMInvalidParameterException("a widget needs a Name");
    }
    readProperty(instanceObject, "Color", widget.color);
    readProperty(instanceObject, "Size", widget.size);
    readProperty(instanceObject, "BinId", widget.binId);
    widget.owner = requestingUser(context);

    handler.processing();
    {
        std::lock_guard<std::mutex> lock(_model.mutex);
        if (_model.findWidget(widgetPath(widget.name, CIMNamespaceName()))) {
            throw CIMObjectAlreadyExistsException(widget.name);
        }
        if (!_model.findBin(widget.binId)) {
            throw CIMInvalidParameterException("no such bin");
        }
        _model.widgets.push_back(widget);
    }
    handler.deliver(widgetPath(widget.name, instanceReference.getNameSpace()));
    handler.complete();
}

void ConformanceProvider::deleteInstance(const OperationContext&,
                                         const CIMObjectPath& instanceReference,
                                         ResponseHandler& handler) {
    handler.processing();
    {
        std::lock_guard<std::mutex> lock(_model.mutex);
        if (!isClass(instanceReference.getClassName(), WIDGET_CLASS) ||
            !_model.removeWidget(instanceReference)) {
            throw CIMObjectNotFoundException(instanceReference.toString());
        }
    }
    handler.complete();
}

std::vector<ConformanceProvider::Link> ConformanceProvider::linksOf(const CIMObjectPath& objectName,
                                                                    const String& role,
                                                                    const CIMName& resultClass,
                                                                    const String& resultRole) {
    const CIMNamespaceName nameSpace = objectName.getNameSpace();
    std::vector<Link> links;
    std::lock_guard<std::mutex> lock(_model.mutex);
    if (isClass(objectName.getClassName(), WIDGET_CLASS)) {
        Widget* widget = _model.findWidget(objectName);
        if (!widget || !roleMatches(role, "Widget") || !roleMatches(resultRole, "Bin") ||
            !classMatches(resultClass, BIN_CLASS)) {
            return links;
        }
        if (Bin* bin = _model.findBin(widget->binId)) {
            links.push_back(
                Link{*widget, binPath(bin->id, nameSpace), binInstance(*bin, nameSpace)});
        }
    } else if (isClass(objectName.getClassName(), BIN_CLASS)) {
        Bin* bin = _model.findBin(objectName);
        if (!bin || !roleMatches(role, "Bin") || !roleMatches(resultRole, "Widget") ||
            !classMatches(resultClass, WIDGET_CLASS)) {
            return links;
        }
        for (const Widget& widget : _model.widgets) {
            if (widget.binId == bin->id) {
                links.push_back(Link{widget, widgetPath(widget.name, nameSpace),
                                     widgetInstance(widget, nameSpace)});
            }
        }
    }
    return links;
}

void ConformanceProvider::associators(const OperationContext&, const CIMObjectPath& objectName,
                                      const CIMName& associationClass, const CIMName& resultClass,
                                      const String& role, const String& resultRole, Boolean,
                                      Boolean, const CIMPropertyList&,
                                      ObjectResponseHandler& handler) {
    handler.processing();
    if (classMatches(associationClass, WIDGET_IN_BIN_CLASS)) {
        for (const Link& link : linksOf(objectName, role, resultClass, resultRole)) {
            handler.deliver(CIMObject(link.farEndInstance));
        }
    }
    handler.complete();
}

void ConformanceProvider::associatorNames(const OperationContext&, const CIMObjectPath& objectName,
                                          const CIMName& associationClass,
                                          const CIMName& resultClass, const String& role,
                                          const String& resultRole,
                                          ObjectPathResponseHandler& handler) {
    handler.processing();
    if (classMatches(associationClass, WIDGET_IN_BIN_CLASS)) {
        for (const Link& link : linksOf(objectName, role, resultClass, resultRole)) {
            handler.deliver(link.farEnd);
        }
    }
    handler.complete();
}

void ConformanceProvider::references(const OperationContext&, const CIMObjectPath& objectName,
                                     const CIMName& resultClass, const String& role, Boolean,
                                     Boolean, const CIMPropertyList&,
                                     ObjectResponseHandler& handler) {
    handler.processing();
    if (classMatches(resultClass, WIDGET_IN_BIN_CLASS)) {
        const CIMNamespaceName nameSpace = objectName.getNameSpace();
        Array<CIMObject> objects;
        for (const Link& link : linksOf(objectName, role, CIMName(), String())) {
            objects.append(CIMObject(widgetInBinInstance(link.widget, nameSpace)));
        }
        handler.deliver(objects);
    }
    handler.complete();
}

void ConformanceProvider::referenceNames(const OperationContext&, const CIMObjectPath& objectName,
                                         const CIMName& resultClass, const String& role,
                                         ObjectPathResponseHandler& handler) {
    handler.processing();
    if (classMatches(resultClass, WIDGET_IN_BIN_CLASS)) {
        const CIMNamespaceName nameSpace = objectName.getNameSpace();
        Array<CIMObjectPath> paths;
        for (const Link& link : linksOf(objectName, role, CIMName(), String())) {
            paths.append(widgetInBinInstance(link.widget, nameSpace).getPath());
        }
        handler.deliver(paths);
    }
    handler.complete();
}

void ConformanceProvider::enableIndications(IndicationResponseHandler& handler) {
    // Unloading would take the delivering thread away with the library.
    _cimom.disallowProviderUnload();
    _alerts.start(handler);
}

void ConformanceProvider::disableIndications() {
    _alerts.stop();
    _cimom.allowProviderUnload();
}

void ConformanceProvider::createSubscription(const OperationContext&,
                                             const CIMObjectPath& subscriptionName,
                                             const Array<CIMObjectPath>& classNames,
                                             const CIMPropertyList&, Uint16) {
    bool forAlerts = false;
    for (Uint32 i = 0; i < classNames.size(); i++) {
        forAlerts = forAlerts || isClass(classNames[i].getClassName(), ALERT_CLASS);
    }
    if (!forAlerts) {
        throw CIMNotSupportedException("this provider only raises Sample_Alert");
    }
    std::lock_guard<std::mutex> lock(_subscriptionMutex);
    _subscriptions.append(subscriptionName);
}

void ConformanceProvider::modifySubscription(const OperationContext&,
                                             const CIMObjectPath& subscriptionName,
                                             const Array<CIMObjectPath>&, const CIMPropertyList&,
                                             Uint16) {
    std::lock_guard<std::mutex> lock(_subscriptionMutex);
    for (Uint32 i = 0; i < _subscriptions.size(); i++) {
        if (_subscriptions[i] == subscriptionName) {
            return;
        }
    }
    throw CIMObjectNotFoundException(subscriptionName.toString());
}

void ConformanceProvider::deleteSubscription(const OperationContext&,
                                             const CIMObjectPath& subscriptionName,
                                             const Array<CIMObjectPath>&) {
    std::lock_guard<std::mutex> lock(_subscriptionMutex);
    for (Uint32 i = 0; i < _subscriptions.size(); i++) {
        if (_subscriptions[i] == subscriptionName) {
            _subscriptions.remove(i);
            return;
        }
    }
    throw CIMObjectNotFoundException(subscriptionName.toString());
}

void ConformanceProvider::invokeMethod(const OperationContext&,
                                       const CIMObjectPath& objectReference,
                                       const CIMName& methodName,
                                       const Array<CIMParamValue>& inParameters,
                                       MethodResultResponseHandler& handler) {
    if (!isClass(objectReference.getClassName(), WIDGET_CLASS)) {
        throw CIMNotSupportedException(objectReference.getClassName().getString());
    }
    if (methodName.equal(CIMName("Resize"))) {
        Uint32 newSize = 0;
        if (!readParameter(inParameters, "NewSize", newSize)) {
            throw CIMInvalidParameterException("NewSize is required");
        }
        Uint32 oldSize = 0;
        {
            std::lock_guard<std::mutex> lock(_model.mutex);
            Widget* widget = _model.findWidget(objectReference);
            if (!widget) {
                throw CIMObjectNotFoundException(objectReference.toString());
            }
            oldSize = widget->size;
            widget->size = newSize;
        }
        handler.processing();
        handler.deliverParamValue(CIMParamValue("OldSize", CIMValue(oldSize)));
        handler.deliver(CIMValue(Uint32(0)));
        handler.complete();
        return;
    }
    if (methodName.equal(CIMName("RaiseAlert"))) {
        String message;
        Uint16 severity = 2;
        if (!readParameter(inParameters, "Message", message)) {
            throw CIMInvalidParameterException("Message is required");
        }
        readParameter(inParameters, "Severity", severity);
        Array<CIMObjectPath> subscriptions;
        {
            std::lock_guard<std::mutex> lock(_subscriptionMutex);
            subscriptions = _subscriptions;
        }
        const bool queued = _alerts.post(message, severity, subscriptions);
        handler.processing();
        Array<CIMParamValue> out;
        out.append(CIMParamValue("Queued", CIMValue(Boolean(queued))));
        handler.deliverParamValue(out);
        handler.deliver(CIMValue(Uint32(queued ? 0 : 1)));
        handler.complete();
        return;
    }
    throw CIMMethodNotFoundException(methodName.getString());
}
