// The little world the conformance provider serves: widgets stored in bins,
// the association between them and the alerts a widget can raise.
#ifndef CONFORMANCE_SAMPLE_MODEL_H
#define CONFORMANCE_SAMPLE_MODEL_H

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

#include <mutex>
#include <vector>

PEGASUS_USING_PEGASUS;

extern const char SAMPLE_NAMESPACE[];
extern const char WIDGET_CLASS[];
extern const char BIN_CLASS[];
extern const char WIDGET_IN_BIN_CLASS[];
extern const char ALERT_CLASS[];

struct Widget {
    String name;
    String color;
    Uint32 size;
    String owner;
    Uint32 binId;
};

struct Bin {
    Uint32 id;
    String label;
};

// Paths are kept without host and namespace; requests arrive fully
// qualified, so they are reduced with localPath() before comparing.
CIMObjectPath localPath(const CIMObjectPath& path);
CIMObjectPath widgetPath(const String& name, const CIMNamespaceName& nameSpace);
CIMObjectPath binPath(Uint32 id, const CIMNamespaceName& nameSpace);

CIMInstance widgetInstance(const Widget& widget, const CIMNamespaceName& nameSpace);
CIMInstance binInstance(const Bin& bin, const CIMNamespaceName& nameSpace);
CIMInstance widgetInBinInstance(const Widget& widget, const CIMNamespaceName& nameSpace);
CIMInstance alertIndication(const String& message, Uint16 severity);

class SampleModel {
public:
    SampleModel();

    // Every member below expects the caller to hold `mutex`.
    Widget* findWidget(const CIMObjectPath& path);
    Bin* findBin(const CIMObjectPath& path);
    Bin* findBin(Uint32 id);
    bool removeWidget(const CIMObjectPath& path);

    std::mutex mutex;
    std::vector<Widget> widgets;
    std::vector<Bin> bins;
};

#endif
