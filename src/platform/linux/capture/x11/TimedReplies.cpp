#include "platform/linux/capture/x11/TimedReplies.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <xcb/xcbext.h>

namespace amberquill::desktop {

TimedReplies::TimedReplies(xcb_connection_t* connection, std::chrono::milliseconds forEach,
                           std::chrono::milliseconds forAll)
    : connection_(connection)
    , forEach_(forEach)
    , deadline_(forAll) {}

void* TimedReplies::await(unsigned sequence) {
    if (unanswered_) {
        xcb_discard_reply(connection_, *unanswered_);
        unanswered_ = sequence;
        return nullptr;
    }
    xcb_flush(connection_);
    const auto deadline = std::min(deadline_, QDeadlineTimer(forEach_));
    while (true) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(connection_, sequence, &reply, &error) != 0) {
            const XcbReply<xcb_generic_error_t> refusal(error);
            return reply;
        }
        const auto left = static_cast<int>(deadline.remainingTime());
        pollfd socket{xcb_get_file_descriptor(connection_), POLLIN, 0};
        if (left <= 0 || (::poll(&socket, 1, left) < 0 && errno != EINTR)) {
            unanswered_ = sequence;
            return nullptr;
        }
    }
}

} // namespace amberquill::desktop
