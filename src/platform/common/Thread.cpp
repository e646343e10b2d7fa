#include "platform/common/Thread.h"

#include <system_error>
#include <thread>
#include <utility>

namespace amberquill {

bool startThread(std::function<void()> work) {
    try {
        std::thread(std::move(work)).detach();
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

} // namespace amberquill
