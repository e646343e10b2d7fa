#pragma once

namespace amberquill::desktop {

// Keeps the threads in the background from having a heap each, and heaps from keeping what was let go of. For
// the start of main().
void limitMallocArenas();

// Gives memory that nobody uses any more back to the system. Takes some milliseconds.
void trimHeap();

} // namespace amberquill::desktop
