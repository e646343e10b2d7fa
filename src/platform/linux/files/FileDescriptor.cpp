#include "platform/linux/files/FileDescriptor.h"

#include <algorithm>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace amberquill::desktop {

bool isReadableBy(int descriptor, QDeadlineTimer deadline) {
    while (true) {
        constexpr qint64 most = 60'000;
        const qint64 left = deadline.remainingTime();
        pollfd entry{descriptor, POLLIN, 0};
        if (::poll(&entry, 1, static_cast<int>(std::min(left, most))) > 0) {
            return true;
        }
        if (left == 0) {
            return false;
        }
    }
}

// Not by glibc's <sys/pidfd.h>: before 2.37, its functions do not link from C++.
FileDescriptor processDescriptor(pid_t process) {
    return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
}

} // namespace amberquill::desktop
