#pragma once

#include "platform/linux/decoder/pictures/IconDecoder.h"

#include <chrono>
#include <functional>

namespace amberquill::desktop {

// Makes a picture of a file's bytes, as decodedIcon() does.
using Decoding = std::function<DecodedIcon(const QByteArray& bytes, int edge)>;

// Of processor time: a busy machine makes no picture too slow.
struct ServingLimits {
    std::chrono::nanoseconds endurance; // an answer given later than this is the last
    std::chrono::seconds longest;       // for one picture; then the process ends (SIGPROF)
};

enum class ServingEnd {
    Done,     // the other end is gone, or the last answer was given
    Senseless // a request that the launcher does not make
};

// Says `Ready` over the socket and answers requests. Leaves nothing of a request behind but what it answered.
[[nodiscard]] ServingEnd serve(int socket, const Decoding& decoding, const ServingLimits& limits);

// Ends the process as soon as the other end of the socket is gone, whatever it is doing. Starts a thread.
void endWithOtherEnd(int socket);

} // namespace amberquill::desktop
