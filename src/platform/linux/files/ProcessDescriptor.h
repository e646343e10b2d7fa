#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <sys/types.h>

namespace amberquill::desktop {

// A descriptor of a child process that becomes readable at its end; not open on kernels without such a thing.
// Any thread.
[[nodiscard]] FileDescriptor processDescriptor(pid_t process);

} // namespace amberquill::desktop
