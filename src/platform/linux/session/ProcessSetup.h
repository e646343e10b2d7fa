#pragma once

namespace amberquill::desktop {

// Keeps malloc from giving each thread a heap of its own, and from keeping freed memory. Call it at the start
// of main().
void limitMallocArenas();

// Returns freed memory to the system. Takes some milliseconds.
void trimHeap();

// Loads the fontconfig configuration, so that Qt need not. Safe on any thread: run it on one of its own while
// the application object is being constructed.
void readFontConfiguration();

} // namespace amberquill::desktop
