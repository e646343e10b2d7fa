#include "platform/linux/session/ProcessSetup.h"

#include <fontconfig/fontconfig.h>
#include <malloc.h>

namespace amberquill::desktop {

namespace {

// In bytes. Larger blocks are mapped by themselves and returned to the system when they are freed. Larger
// free space at the end of a heap is returned, too.
constexpr int largestInHeap = 256 * 1024;
constexpr int largestFreeEnd = 1024 * 1024;

} // namespace

void limitMallocArenas() {
    // One arena for the main thread, one for all others.
    ::mallopt(M_ARENA_MAX, 2);
    // By default malloc raises both limits to the size of the largest block ever freed, up to 64 MB.
    ::mallopt(M_MMAP_THRESHOLD, largestInHeap);
    ::mallopt(M_TRIM_THRESHOLD, largestFreeEnd);
}

void trimHeap() {
    ::malloc_trim(0);
}

void readFontConfiguration() {
    FcInit();
}

} // namespace amberquill::desktop
