#include "platform/linux/session/ProcessSetup.h"

#include <fontconfig/fontconfig.h>
#include <malloc.h>

namespace amberquill::desktop {

namespace {

// In bytes: what is larger has pages of its own, which the system has back at once; what is free at the end
// of a heap and larger goes back as well.
constexpr int largestInHeap = 256 * 1024;
constexpr int largestFreeEnd = 1024 * 1024;

} // namespace

void limitMallocArenas() {
    // One for the main thread, one for all others.
    ::mallopt(M_ARENA_MAX, 2);
    // Both would grow by themselves with the largest picture that was ever let go of, up to 64 MB for each
    // heap.
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
