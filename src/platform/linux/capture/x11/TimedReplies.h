#pragma once

#include "platform/linux/x11/XcbReply.h"

#include <QDeadlineTimer>
#include <chrono>
#include <optional>

namespace amberquill::desktop {

// Waits for replies of an X server, with a limit for each reply and one for all. Needs its own connection.
class TimedReplies {
public:
    TimedReplies(xcb_connection_t* connection, std::chrono::milliseconds forEach,
                 std::chrono::milliseconds forAll);

    // The reply to a request (a cookie of xcb's). Null: an error, a lost connection, or no reply in time.
    template<typename Reply, typename Cookie>
    [[nodiscard]] XcbReply<Reply> wait(Cookie cookie) {
        return XcbReply<Reply>(static_cast<Reply*>(await(cookie.sequence)));
    }

    // Waits for the reply to an earlier request and discards it. Whether it arrived.
    bool settle(unsigned sequence) {
        const XcbReply<void> answer(await(sequence));
        return !unanswered_;
    }

    // The first request without a reply in time, if any. Later requests are not waited for.
    [[nodiscard]] std::optional<unsigned> unanswered() const { return unanswered_; }

private:
    [[nodiscard]] void* await(unsigned sequence);

    xcb_connection_t* connection_;
    std::chrono::milliseconds forEach_;
    QDeadlineTimer deadline_;
    std::optional<unsigned> unanswered_;
};

} // namespace amberquill::desktop
