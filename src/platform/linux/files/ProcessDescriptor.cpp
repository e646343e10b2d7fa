#include "platform/linux/files/ProcessDescriptor.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace amberquill::desktop {

// Not through glibc's <sys/pidfd.h>, which C++ cannot link with before 2.37.
FileDescriptor processDescriptor(pid_t process) {
    return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
}

} // namespace amberquill::desktop
