// The name a quota kind has in messages and in model files.
#ifndef QZSIM_QUOTAKIND_H
#define QZSIM_QUOTAKIND_H

#include <qzantras/MgmtTypes.h>

namespace qzsim {

inline const char* quotaKindName(int kind) {
    switch (kind) {
    case MGMT_QUOTA_USER:
        return "user";
    case MGMT_QUOTA_GROUP:
        return "group";
    default:
        return "fileset";
    }
}

} // namespace qzsim

#endif
