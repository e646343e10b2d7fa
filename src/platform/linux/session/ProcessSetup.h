#pragma once

namespace amberquill::desktop {

// Keeps the threads in the background from having a heap each, and heaps from keeping what was let go of. For
// the start of main().
void limitMallocArenas();

// Gives memory that nobody uses any more back to the system. Takes some milliseconds.
void trimHeap();

// Reads the configuration of the fonts, which Qt then finds read. Safe on any thread, and worth one of its
// own while the application object is being made.
void readFontConfiguration();

} // namespace amberquill::desktop
