// The two ready-made indication filters, so that a client can subscribe to
// mount and unmount indications without writing its own query.
#include "cimProvider.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <qzantras/ts_log.h>

#include "deploymentSettings.h"

PEGASUS_USING_PEGASUS;

CIMInstance VexaProvider::createIndicationFilter(const String& name, const String& query,
                                                 const String& queryLanguage,
                                                 const String& sourceNamespace) {
    CIMInstance filter(INDICATION_FILTER);
    filter.addProperty(CIMProperty(CIMName("Name"), CIMValue(name)));
    filter.addProperty(CIMProperty(CIMName("Query"), CIMValue(query)));
    filter.addProperty(CIMProperty(CIMName("QueryLanguage"), CIMValue(queryLanguage)));
    filter.addProperty(CIMProperty(CIMName("SourceNamespace"), CIMValue(sourceNamespace)));

    // The system keys live in the path only; the instance carries just the
    // filter's own properties.
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("SystemCreationClassName"),
                              String("KOR_VEXA_ManagementSystem"), CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("SystemName"), String(VEXA_MANAGEMENT_NODE_IP),
                              CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("CreationClassName"), String("KOR_VEXA_IndicationFilter"),
                              CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding(CIMName("Name"), name, CIMKeyBinding::STRING));

    CIMObjectPath path(String(), CIMNamespaceName(), INDICATION_FILTER, keys);
    path.setNameSpace(NAMESPACE);
    filter.setPath(path);
    return filter;
}

int VexaProvider::buildIndicationFilterList() {
    ts_log(0, "VexaProvider::buildIndicationFilterList", "enter\n");
    indicationFilters.clear();
    indicationFilters.append(createIndicationFilter(
        String("MountFilter"), String("SELECT * FROM KOR_VEXA_MountIndication"), String("WQL"),
        NAMESPACE.getString()));
    indicationFilters.append(createIndicationFilter(
        String("UnmountFilter"), String("SELECT * FROM KOR_VEXA_UnmountIndication"), String("WQL"),
        NAMESPACE.getString()));
    ts_log(0, "VexaProvider::buildIndicationFilterList", "number of indication filters = %d\n",
           static_cast<int>(indicationFilters.size()));
    return 0;
}
