// Finding a cached instance by its object path: through the array's path
// index when it is usable, by a walk otherwise. Both give the first match in
// array order.
#include "instanceByPath.h"

#include "cimProvider.h"

PEGASUS_USING_PEGASUS;

int firstWithPath(VexaProvider& provider, const Array<CIMInstance>& array,
                  const CIMObjectPath& path) {
    int found = -1;
    if (ArrayIndex* index = provider.usableIndex(array, ArrayIndex::ByPath)) {
        index->positions().forEach(pathHash(path), [&](std::uint32_t i) {
            if (!array[i].getPath().identical(path))
                return false;
            found = static_cast<int>(i);
            return true;
        });
        return found;
    }
    for (Uint32 i = 0; i < array.size(); i++) {
        if (array[i].getPath().identical(path))
            return static_cast<int>(i);
    }
    return -1;
}
