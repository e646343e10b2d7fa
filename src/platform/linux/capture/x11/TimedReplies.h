#pragma once

#include "platform/linux/x11/XcbReply.h"

#include <QDeadlineTimer>
#include <chrono>
#include <optional>

namespace amberquill::desktop {

// Waits for the answers of an X server, for each of them only so long, and until a point in time for all. The
// connection is nobody else's.
class TimedReplies {
public:
    TimedReplies(xcb_connection_t* connection, std::chrono::milliseconds forEach,
                 std::chrono::milliseconds forAll);

    // The answer to a request (a cookie of xcb's). Null: the server refused, has gone, or did not answer in
    // time.
    template<typename Reply, typename Cookie>
    [[nodiscard]] XcbReply<Reply> wait(Cookie cookie) {
        return XcbReply<Reply>(static_cast<Reply*>(await(cookie.sequence)));
    }

    // The same for an answer that a request of before still has to get. Whether it came.
    bool settle(unsigned sequence) {
        const XcbReply<void> answer(await(sequence));
        return !unanswered_;
    }

    // The request that was not answered in time, if there was one. Those after it were not waited for.
    [[nodiscard]] std::optional<unsigned> unanswered() const { return unanswered_; }

private:
    [[nodiscard]] void* await(unsigned sequence);

    xcb_connection_t* connection_;
    std::chrono::milliseconds forEach_;
    QDeadlineTimer deadline_;
    std::optional<unsigned> unanswered_;
};

} // namespace amberquill::desktop
