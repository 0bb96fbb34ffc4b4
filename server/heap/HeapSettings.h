// The heap settings a server process starts with.
#ifndef VEXA_SERVER_HEAP_HEAPSETTINGS_H
#define VEXA_SERVER_HEAP_HEAPSETTINGS_H

namespace vexa::heap {

// Asks the allocator to place the heap on huge pages where the system lets
// it (transparent huge pages in "madvise" mode, as Debian ships them). A
// full pass on a large cluster fills a gigabyte with small objects, and on a
// virtual machine the first touch of every 4 KiB page costs microseconds:
// that alone was a third of the pass. Called first thing in main. Does
// nothing when the program is built without mimalloc, or when
// MIMALLOC_LARGE_OS_PAGES is set in the environment (it then decides).
void useHugePages();

// "mimalloc with huge pages", "mimalloc" or "malloc": for the start-up log.
const char* allocatorName();

} // namespace vexa::heap

#endif
