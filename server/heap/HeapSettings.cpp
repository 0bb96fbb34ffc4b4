#include "HeapSettings.h"

#include <cstdlib>

#ifdef VEXA_HAVE_MIMALLOC
#include <mimalloc.h>
#endif

namespace vexa::heap {

void useHugePages() {
#ifdef VEXA_HAVE_MIMALLOC
    if (std::getenv("MIMALLOC_LARGE_OS_PAGES") == nullptr)
        mi_option_enable(mi_option_large_os_pages);
#endif
}

const char* allocatorName() {
#ifdef VEXA_HAVE_MIMALLOC
    return mi_option_is_enabled(mi_option_large_os_pages) ? "mimalloc with huge pages" : "mimalloc";
#else
    return "malloc";
#endif
}

} // namespace vexa::heap
