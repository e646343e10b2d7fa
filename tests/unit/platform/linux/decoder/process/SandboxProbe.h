#pragma once

namespace amberquill::desktop {

// With what status the probe ends that has tried something it was told to.
enum class ProbeExit {
    Succeeded = 0,
    Failed = 10,
    NoSandbox = 11, // nothing was tried
    Unknown = 12,   // there is no such thing to try
};

} // namespace amberquill::desktop
