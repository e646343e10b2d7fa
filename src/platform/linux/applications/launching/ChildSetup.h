#pragma once

#include "platform/linux/applications/launching/StartLimits.h"

// What runs in a new process between fork and exec. The launcher has other threads, so any lock may be held
// for ever in there: these functions allocate nothing and call what is safe in a signal handler alone. All
// they are given was made before the fork.
namespace amberquill::desktop {

struct ChildSetup {
    const char* program = nullptr;
    char* const* arguments = nullptr;
    char* const* environment = nullptr;
    char* processIdPlace = nullptr; // in the environment, with room for `processIdRoom` bytes; null: none
    const char* const* workingDirectories = nullptr; // ends with null
    const StartLimits* limits = nullptr;
    bool restoreOutOfMemoryScore = false;
    int hold = -1;    // a byte, or end of file, is the word to go ahead; above the standard streams
    int outcome = -1; // where a failure's error number goes; above the standard streams
    unsigned int descriptorLimit = 0; // no descriptor is open at or above this one
};

inline constexpr std::size_t processIdRoom = 16;

// Becomes the program, or ends.
[[noreturn]] void runChild(const ChildSetup& setup);

// Closes every descriptor from `first` up, one by one: for kernels that cannot do it at a stroke.
void closeOneByOne(unsigned int first, unsigned int limit);

} // namespace amberquill::desktop
