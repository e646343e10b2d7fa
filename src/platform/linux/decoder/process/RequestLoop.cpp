#include "platform/linux/decoder/process/RequestLoop.h"

#include "platform/common/Thread.h"
#include "platform/linux/decoder/channel/DecodingMessages.h"
#include "platform/linux/decoder/channel/MessageSocket.h"
#include "platform/linux/decoder/channel/SharedMemory.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>
#include <poll.h>
#include <sys/time.h>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

struct DecodingJob {
    MappedMemory file;
    MappedMemory picture;
    int edge = 0;
};

std::chrono::nanoseconds usedProcessorTime() {
    timespec time = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// None: a request that the launcher does not send. The descriptors are closed before the decoding.
std::optional<DecodingJob> validJob(ReceivedMessage&& received, std::span<const std::byte> bytes) {
    const ReceivedMessage message = std::move(received);
    if (!message.isWhole || message.descriptorCount != requestDescriptors) {
        return std::nullopt;
    }
    const auto request = decodedRequest(bytes);
    if (!request) {
        return std::nullopt;
    }
    auto file = MappedMemory::map(message.descriptors[0], request->bytes, MappedMemory::Access::Read);
    auto picture = MappedMemory::map(message.descriptors[1], pictureBytes(request->edge),
                                     MappedMemory::Access::ReadAndWrite);
    if (!file || !picture) {
        return std::nullopt;
    }
    return DecodingJob{std::move(*file), std::move(*picture), static_cast<int>(request->edge)};
}

// Copies the picture's rows without gaps. False: it has another size or format than requested.
bool store(const QImage& image, DecodingJob& job) {
    if (image.size() != QSize(job.edge, job.edge) || image.format() != QImage::Format_ARGB32_Premultiplied) {
        return false;
    }
    const std::size_t row = job.picture.bytes().size() / static_cast<std::size_t>(job.edge);
    for (int y = 0; y < job.edge; ++y) {
        std::memcpy(job.picture.bytes().data() + row * static_cast<std::size_t>(y), image.constScanLine(y),
                    row);
    }
    return true;
}

DecodingOutcome decode(DecodingJob& job, const Decoding& decoding) {
    const auto file = job.file.bytes();
    const auto bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(file.data()),
                                               static_cast<qsizetype>(file.size()));
    const auto icon = decoding(bytes, job.edge);
    if (icon.needsFonts) {
        return DecodingOutcome::NeedsFonts;
    }
    return store(icon.image, job) ? DecodingOutcome::Picture : DecodingOutcome::NoPicture;
}

// 0: no limit.
void setPictureTimer(std::chrono::seconds limit) {
    const itimerval timer = {.it_interval = {}, .it_value = {.tv_sec = limit.count(), .tv_usec = 0}};
    ::setitimer(ITIMER_PROF, &timer, nullptr);
}

bool sendAnswer(int socket, const DecodingAnswer& answer) {
    std::array<std::byte, answerSize> message = {};
    encode(answer, message);
    return sendMessage(socket, message);
}

} // namespace

RequestLoopEnd serveRequests(int socket, const Decoding& decoding, const RequestLimits& limits) {
    if (!sendAnswer(socket, {DecodingOutcome::Ready, 0, false})) {
        return RequestLoopEnd::Done;
    }
    while (true) {
        std::array<std::byte, requestSize> buffer = {};
        auto message = receiveMessage(socket, buffer);
        if (!message) {
            return RequestLoopEnd::Done;
        }
        const auto bytes = std::span(buffer).first(message->size);
        auto job = validJob(std::move(*message), bytes);
        if (!job) {
            return RequestLoopEnd::InvalidRequest;
        }
        setPictureTimer(limits.picture);
        const auto outcome = decode(*job, decoding);
        setPictureTimer({});
        const bool isLast = usedProcessorTime() >= limits.process;
        if (!sendAnswer(socket, {outcome, static_cast<std::uint32_t>(job->edge), isLast}) || isLast) {
            return RequestLoopEnd::Done;
        }
    }
}

void exitWhenSocketCloses(int socket) {
    const bool isStarted = startThread([socket] {
        pollfd end = {socket, 0, 0}; // POLLHUP is always reported
        while (::poll(&end, 1, -1) < 1) {
        }
        ::_exit(0);
    });
    if (!isStarted) {
        ::_exit(EXIT_FAILURE); // it could outlive the launcher
    }
}

} // namespace amberquill::desktop
