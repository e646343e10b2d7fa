#include "platform/linux/applications/icons/workers/IconWorker.h"

#include "platform/linux/decoder/channel/MessageSocket.h"
#include "platform/linux/decoder/channel/SharedMemory.h"
#include "platform/linux/files/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

// Limits each colour to the alpha, so that the pixels are valid premultiplied ones.
void makePremultiplied(QImage& image) {
    auto* const pixels = reinterpret_cast<QRgb*>(image.bits());
    std::transform(pixels, pixels + image.sizeInBytes() / qsizetype{sizeof(QRgb)}, pixels, [](QRgb pixel) {
        const int alpha = qAlpha(pixel);
        return qRgba(std::min(qRed(pixel), alpha), std::min(qGreen(pixel), alpha),
                     std::min(qBlue(pixel), alpha), alpha);
    });
}

// Copies the memory instead of mapping it: the process can still write to it.
QImage readPicture(const FileDescriptor& memory, std::uint32_t edge) {
    QImage image(static_cast<int>(edge), static_cast<int>(edge), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return image;
    }
    auto* const bytes = reinterpret_cast<char*>(image.bits());
    const auto size = pictureBytes(edge);
    for (std::size_t done = 0; done < size;) {
        const ssize_t got = ::pread(memory.get(), bytes + done, size - done, static_cast<off_t>(done));
        if (got == 0 || (got < 0 && errno != EINTR)) {
            return {};
        }
        done += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    makePremultiplied(image);
    return image;
}

} // namespace

std::unique_ptr<IconWorker> IconWorker::start(const WorkerProgram& program, const IconWorkerLimits& limits,
                                              const ProcessorTime& processorTime, bool hasFonts) {
    auto sockets = messageSockets();
    // Sending must not block if the process does not read.
    if (!sockets || ::fcntl(sockets->first.get(), F_SETFL, O_NONBLOCK) != 0) {
        return nullptr;
    }
    std::vector<std::string> arguments;
    if (hasFonts) {
        arguments.emplace_back(decoderFontsArgument);
    }
    auto process = WorkerProcess::start(program, arguments, sockets->second);
    if (!process) {
        return nullptr;
    }
    return std::make_unique<IconWorker>(std::move(process), std::move(sockets->first), limits, processorTime,
                                        hasFonts);
}

IconWorker::IconWorker(std::unique_ptr<WorkerProcess> process, FileDescriptor socket,
                       const IconWorkerLimits& limits, ProcessorTime processorTime, bool hasFonts)
    : socket_(std::move(socket))
    , limits_(limits)
    , processorTime_(std::move(processorTime))
    , hasFonts_(hasFonts)
    , startEnds_(limits_.start)
    , process_(std::move(process)) {}

bool IconWorker::isHealthy() const {
    // While it starts, the message that it is ready may arrive at any time.
    return !isReady_ || !isReadableBy(socket_.get(), {});
}

bool IconWorker::isStarting() const {
    return !isReady_ && !isReadableBy(socket_.get(), {});
}

DecodingAttempt IconWorker::decode(const FileDescriptor& file, const DecodingRequest& request) {
    if (!isReady_) {
        if (const auto failure = awaitReady()) {
            return {*failure, {}, false};
        }
    }
    const FileDescriptor picture = writableMemory(pictureBytes(request.edge));
    std::array<std::byte, requestSize> message = {};
    encode(request, message);
    const auto usedBefore = processorTime_(process_->id());
    if (!picture.isOpen()) {
        return {Kind::Killed, {}, true};
    }
    if (!sendMessage(socket_.get(), message, std::array{file.get(), picture.get()})) {
        return {Kind::Killed, {}, false};
    }
    if (!isReadableBy(socket_.get(), QDeadlineTimer(limits_.picture))) {
        if (const auto failure = awaitSlowAnswer(usedBefore)) {
            process_->kill();
            return *failure;
        }
    }
    const auto [answer, wasKilled] = receive();
    if (!answer) {
        return {wasKilled ? Kind::Killed : Kind::Failed, {}, false};
    }
    if (answer->edge != request.edge) {
        return {};
    }
    switch (answer->outcome) {
    case DecodingOutcome::Picture: {
        auto image = readPicture(picture, request.edge);
        // A lack of memory here is not the process's failure.
        const Kind kind = image.isNull() ? Kind::Killed : Kind::Picture;
        return {kind, std::move(image), !answer->isLast};
    }
    case DecodingOutcome::NoPicture:
        return {Kind::NoPicture, {}, !answer->isLast};
    case DecodingOutcome::NeedsFonts:
        return hasFonts_ ? DecodingAttempt{} : DecodingAttempt{Kind::NeedsFonts, {}, !answer->isLast};
    case DecodingOutcome::Ready:
        break;
    }
    return {};
}

// For a process that has not answered within the limit. It goes on while it gets too little processor time to
// be called too slow. None: there is an answer.
std::optional<DecodingAttempt> IconWorker::awaitSlowAnswer(std::chrono::nanoseconds usedBefore) const {
    constexpr int checks = 8;      // in each limit
    constexpr int smallShare = 20; // one part of so many is hardly any processor time
    for (int check = checks;; ++check) {
        const auto passed = limits_.picture * check / checks;
        const auto used = processorTime_(process_->id()) - usedBefore;
        if (used * 2 >= limits_.picture) {
            return DecodingAttempt{Kind::TimedOut, {}, false};
        }
        if (used * smallShare < passed || check >= checks * maximumWaits) {
            return DecodingAttempt{Kind::Starved, {}, false, check / checks};
        }
        if (isReadableBy(socket_.get(), QDeadlineTimer(limits_.picture / checks))) {
            return std::nullopt;
        }
    }
}

void IconWorker::interrupt() {
    process_->kill();
    ::shutdown(socket_.get(), SHUT_RDWR); // wakes the reader even if the process takes long to end
}

IconWorker::Reply IconWorker::receive() {
    std::array<std::byte, answerSize> buffer = {};
    const auto message = receiveMessage(socket_.get(), buffer);
    if (!message) {
        // A process that still runs was not killed from outside.
        const auto end =
            process_->waitForEnd(QDeadlineTimer(limits_.end)).value_or(WorkerProcess::End::ByItself);
        return {std::nullopt, end == WorkerProcess::End::FromOutside};
    }
    if (!message->isWhole || message->descriptorCount > 0) {
        return {};
    }
    return {decodedAnswer(std::span(buffer).first(message->size)), false};
}

// None: the process is ready. Else why not.
std::optional<IconWorker::Kind> IconWorker::awaitReady() {
    if (!isReadableBy(socket_.get(), startEnds_)) {
        return Kind::StartFailed;
    }
    Reply reply = receive();
    if (reply.answer == DecodingAnswer{DecodingOutcome::Ready, 0, false}) {
        if (!isReadableBy(socket_.get(), {})) {
            isReady_ = true;
            return std::nullopt;
        }
        reply = receive(); // no message may follow before a request, so this is its end or an invalid one
    }
    return reply.wasKilled ? Kind::StartKilled : Kind::StartFailed;
}

} // namespace amberquill::desktop
