#pragma once

namespace amberquill::desktop {

// Keeps the threads that decode icons from having a heap each. For the start of main().
void shareHeap();

// Gives memory that start-up needed and nobody uses any more back to the system.
void trimHeap();

} // namespace amberquill::desktop
