#pragma once

namespace amberquill::desktop {

// The probe's exit status.
enum class ProbeExit {
    Succeeded = 0,
    Failed = 10,
    NoSandbox = 11, // nothing was tried
    Unknown = 12,   // no such operation
};

} // namespace amberquill::desktop
