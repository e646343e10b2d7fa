#pragma once

#include "platform/linux/applications/launching/InheritedState.h"

// The steps of a new process between fork and exec. The launcher has other threads, so any lock may be held
// in the copy: these functions allocate nothing and call only async-signal-safe functions. Their parameters
// are built before the fork.
namespace amberquill::desktop {

struct ChildSetup {
    const char* program = nullptr;
    char* const* arguments = nullptr;
    char* const* environment = nullptr;
    char* processIdPlace = nullptr; // in the environment, with room for `processIdRoom` bytes; null: none
    const char* const* workingDirectories = nullptr; // ends with null
    const InheritedLimits* limits = nullptr;
    bool restoreOutOfMemoryScore = false;
    int startGate = -1;               // start gate: exec after one byte or EOF; above the standard streams
    int outcome = -1;                 // takes the error number of a failed exec; above the standard streams
    unsigned int descriptorLimit = 0; // no descriptor is open at or above this one
};

inline constexpr std::size_t processIdRoom = 16;

// Executes the program, or exits.
[[noreturn]] void runChild(const ChildSetup& setup);

// Closes each descriptor from `first` to `limit`: for kernels without close_range().
void closeOneByOne(unsigned int first, unsigned int limit);

} // namespace amberquill::desktop
