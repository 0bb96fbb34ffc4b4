#ifndef QZSIM_OWNED_LIST_H
#define QZSIM_OWNED_LIST_H

#include <vector>

namespace qzsim {

// Deletes the records of a list of owned pointers and empties it.
template <typename T>
void deleteAll(std::vector<T*>& list) {
    for (T* item : list) {
        delete item;
    }
    list.clear();
}

} // namespace qzsim

#endif
