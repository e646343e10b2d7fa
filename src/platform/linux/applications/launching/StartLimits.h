#pragma once

#include <QByteArray>
#include <array>
#include <optional>
#include <sys/resource.h>

namespace amberquill::desktop {

// The limits the launcher was started under. Applications get these back, whatever the launcher has changed
// for itself since.
struct StartLimits {
    // By resource number, RLIMIT_CPU and so on; none where it cannot be learned.
    std::array<std::optional<rlimit>, RLIM_NLIMITS> resources;
    // How readily the kernel sacrifices the process when memory runs out, in the kernel's words; empty:
    // unknown.
    QByteArray outOfMemoryScore;

    // This process's, as they are now. For the very start of main().
    [[nodiscard]] static StartLimits capture();
};

} // namespace amberquill::desktop
