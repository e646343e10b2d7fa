#include "platform/linux/files/ReadableBy.h"

#include <algorithm>
#include <poll.h>

namespace amberquill::desktop {

bool isReadableBy(int descriptor, std::chrono::steady_clock::time_point deadline) {
    while (true) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        constexpr std::chrono::milliseconds none{0};
        constexpr std::chrono::milliseconds most{60'000};
        pollfd entry{descriptor, POLLIN, 0};
        if (::poll(&entry, 1, static_cast<int>(std::clamp(left, none, most).count())) > 0) {
            return true;
        }
        if (left <= none) {
            return false;
        }
    }
}

} // namespace amberquill::desktop
