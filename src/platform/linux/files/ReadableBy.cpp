#include "platform/linux/files/ReadableBy.h"

#include <algorithm>
#include <poll.h>

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

} // namespace amberquill::desktop
