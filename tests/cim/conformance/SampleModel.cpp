#include "SampleModel.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

const char SAMPLE_NAMESPACE[] = "root/sample";
const char WIDGET_CLASS[] = "Sample_Widget";
const char BIN_CLASS[] = "Sample_Bin";
const char WIDGET_IN_BIN_CLASS[] = "Sample_WidgetInBin";
const char ALERT_CLASS[] = "Sample_Alert";

CIMObjectPath localPath(const CIMObjectPath& path) {
    return CIMObjectPath(String(), CIMNamespaceName(), path.getClassName(), path.getKeyBindings());
}

CIMObjectPath widgetPath(const String& name, const CIMNamespaceName& nameSpace) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Name"), name, CIMKeyBinding::STRING));
    return CIMObjectPath(String(), nameSpace, CIMName(WIDGET_CLASS), keys);
}

CIMObjectPath binPath(Uint32 id, const CIMNamespaceName& nameSpace) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Id"), CIMValue(id)));
    return CIMObjectPath(String(), nameSpace, CIMName(BIN_CLASS), keys);
}

CIMInstance widgetInstance(const Widget& widget, const CIMNamespaceName& nameSpace) {
    CIMInstance instance{CIMName(WIDGET_CLASS)};
    instance.addProperty(CIMProperty(CIMName("Name"), CIMValue(widget.name)));
    instance.addProperty(CIMProperty(CIMName("Color"), CIMValue(widget.color)));
    instance.addProperty(CIMProperty(CIMName("Size"), CIMValue(widget.size)));
    instance.addProperty(CIMProperty(CIMName("Owner"), CIMValue(widget.owner)));
    instance.setPath(widgetPath(widget.name, nameSpace));
    return instance;
}

CIMInstance binInstance(const Bin& bin, const CIMNamespaceName& nameSpace) {
    CIMInstance instance{CIMName(BIN_CLASS)};
    instance.addProperty(CIMProperty(CIMName("Id"), CIMValue(bin.id)));
    instance.addProperty(CIMProperty(CIMName("Label"), CIMValue(bin.label)));
    instance.setPath(binPath(bin.id, nameSpace));
    return instance;
}

CIMInstance widgetInBinInstance(const Widget& widget, const CIMNamespaceName& nameSpace) {
    const CIMObjectPath widgetRef = widgetPath(widget.name, nameSpace);
    const CIMObjectPath binRef = binPath(widget.binId, nameSpace);
    CIMInstance instance{CIMName(WIDGET_IN_BIN_CLASS)};
    instance.addProperty(
        CIMProperty(CIMName("Widget"), CIMValue(widgetRef), 0, CIMName(WIDGET_CLASS)));
    instance.addProperty(CIMProperty(CIMName("Bin"), CIMValue(binRef), 0, CIMName(BIN_CLASS)));
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Widget"), CIMValue(widgetRef)));
    keys.append(CIMKeyBinding(CIMName("Bin"), CIMValue(binRef)));
    instance.setPath(CIMObjectPath(String(), nameSpace, CIMName(WIDGET_IN_BIN_CLASS), keys));
    return instance;
}

CIMInstance alertIndication(const String& message, Uint16 severity) {
    CIMInstance indication{CIMName(ALERT_CLASS)};
    indication.addProperty(CIMProperty(CIMName("Message"), CIMValue(message)));
    indication.addProperty(CIMProperty(CIMName("Severity"), CIMValue(severity)));
    // The server routes an indication by the namespace of its path.
    indication.setPath(
        CIMObjectPath(String::EMPTY, CIMNamespaceName(SAMPLE_NAMESPACE), CIMName(ALERT_CLASS)));
    return indication;
}

SampleModel::SampleModel() {
    bins.push_back(Bin{1, "Shelf"});
    bins.push_back(Bin{2, "Drawer"});
    widgets.push_back(Widget{"alpha", "red", 3, "system", 1});
    widgets.push_back(Widget{"beta", "blue", 5, "system", 2});
    widgets.push_back(Widget{"gamma", "green", 8, "system", 2});
}

Widget* SampleModel::findWidget(const CIMObjectPath& path) {
    const CIMObjectPath wanted = localPath(path);
    for (Widget& widget : widgets) {
        if (widgetPath(widget.name, CIMNamespaceName()) == wanted) {
            return &widget;
        }
    }
    return nullptr;
}

Bin* SampleModel::findBin(const CIMObjectPath& path) {
    const CIMObjectPath wanted = localPath(path);
    for (Bin& bin : bins) {
        if (binPath(bin.id, CIMNamespaceName()) == wanted) {
            return &bin;
        }
    }
    return nullptr;
}

Bin* SampleModel::findBin(Uint32 id) {
    for (Bin& bin : bins) {
        if (bin.id == id) {
            return &bin;
        }
    }
    return nullptr;
}

bool SampleModel::removeWidget(const CIMObjectPath& path) {
    const CIMObjectPath wanted = localPath(path);
    for (std::vector<Widget>::iterator it = widgets.begin(); it != widgets.end(); ++it) {
        if (widgetPath(it->name, CIMNamespaceName()) == wanted) {
            widgets.erase(it);
            return true;
        }
    }
    return false;
}
