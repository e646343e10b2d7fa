#include "platform/linux/process/Heap.h"

#include <malloc.h>

namespace amberquill::desktop {

void shareHeap() {
    // One for the main thread, one for all others.
    ::mallopt(M_ARENA_MAX, 2);
}

void trimHeap() {
    ::malloc_trim(0);
}

} // namespace amberquill::desktop
