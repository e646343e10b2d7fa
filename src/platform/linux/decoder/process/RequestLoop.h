#pragma once

#include "platform/linux/decoder/pictures/IconDecoder.h"

#include <QByteArray>
#include <chrono>
#include <functional>

namespace amberquill::desktop {

// Makes a picture of a file's bytes, as decodedIcon() does.
using Decoding = std::function<DecodedIcon(const QByteArray& bytes, int edge)>;

// Limits of processor time, so that a busy machine does not make pictures fail.
struct RequestLimits {
    std::chrono::nanoseconds process; // an answer after this is the process's last one
    std::chrono::seconds picture;     // for one picture; then SIGPROF ends the process
};

enum class RequestLoopEnd {
    Done,          // the other end is gone, or the last answer was sent
    InvalidRequest // a request that the launcher does not send
};

// Sends `Ready` and answers requests. Keeps nothing of a request but the answer.
[[nodiscard]] RequestLoopEnd serveRequests(int socket, const Decoding& decoding, const RequestLimits& limits);

// Exits the process as soon as the other end of the socket is gone, even while it decodes. Starts a thread.
void exitWhenSocketCloses(int socket);

} // namespace amberquill::desktop
