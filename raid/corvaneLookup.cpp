// Finding a declustered-RAID element in its cached list by the name a method
// caller gives.
#include "cimProvider.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <qzantras/ts_log.h>

PEGASUS_USING_PEGASUS;

int VexaProvider::getCorvaneInstIdx(CorvaneInstanceType type, String value) {
    static const char* const fn = "VexaProvider::getCorvaneInstIdx";
    const Array<CIMInstance>* list;
    const char* keyProperty;
    switch (type) {
    case CORVANE_INST_PHYSICAL_DISK:
        list = &raidPhysicalDisks;
        keyProperty = "DeviceID";
        break;
    case CORVANE_INST_VIRTUAL_DISK:
        list = &raidVirtualDisks;
        // Callers name virtual disks by "Name" although the path is keyed by
        // "DeviceID": the management tools that call the methods know them
        // by that name.
        keyProperty = "Name";
        break;
    case CORVANE_INST_DECLUSTERED_ARRAY:
        list = &raidDeclusteredArrays;
        keyProperty = "Name";
        break;
    default:
        return -1;
    }

    const CIMName propertyName(keyProperty);
    int found = -1;
    auto matches = [&](Uint32 i) {
        const CIMInstance& instance = (*list)[i];
        const Uint32 at = instance.findProperty(propertyName);
        if (at == PEG_NOT_FOUND) {
            return false;
        }
        const String text = instance.getProperty(at).getValue().toString();
        ts_log(0, fn, "vStr = %s\n", (const char*)text.getCString());
        return String::equal(text, value) != 0;
    };
    // Through the index only the matching element is compared, so only its
    // "vStr" line is logged; the walk logs every element it passes.
    if (ArrayIndex* index = usableIndex(*list, ArrayIndex::ByKeyText, &propertyName)) {
        index->positions().forEach(textHash(value), [&](std::uint32_t i) {
            if (!matches(i)) {
                return false;
            }
            found = static_cast<int>(i);
            return true;
        });
    } else {
        for (Uint32 i = 0; i < list->size(); i++) {
            if (matches(i)) {
                found = static_cast<int>(i);
                break;
            }
        }
    }
    ts_log(0, fn, "instance index found = %d\n", found);
    return found;
}
