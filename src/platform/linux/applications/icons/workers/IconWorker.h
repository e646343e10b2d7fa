#pragma once

#include "platform/linux/applications/icons/workers/WorkerProcess.h"
#include "platform/linux/decoder/channel/DecodingMessages.h"

#include <QDeadlineTimer>
#include <QImage>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace amberquill::desktop {

struct IconWorkerLimits {
    std::chrono::milliseconds start{10'000};  // until it is ready; the machine may be under load
    std::chrono::milliseconds picture{2'000}; // for one picture, from the request on; more on a busy machine
    std::chrono::milliseconds end{1'000};     // for the process's end after its socket was closed
};

// The outcome of one file in one process.
struct DecodingAttempt {
    enum class Kind {
        Picture,
        NoPicture,
        NeedsFonts,
        Failed,      // the process crashed, exited, or sent an invalid answer
        TimedOut,    // too slow, while it used the processor
        Starved,     // too slow, with hardly any processor time
        Killed,      // killed from outside, gone before the request, or no memory for the picture
        StartFailed, // the process was never ready
        StartKilled, // killed from outside before it was ready
    };
    Kind kind = Kind::Failed;
    QImage image;          // for Picture
    bool isUsable = false; // the process can take another request
    int waits = 1;         // how many times the limit for a picture passed, for Starved
};

// A process that decodes icons, one at a time. Its answers are validated, because a hostile file may control
// the process. Any thread, but one at a time; interrupt() at any time.
class IconWorker {
public:
    // A process that gets little processor time may take the limit for a picture so many times.
    static constexpr int maximumWaits = 5;

    using ProcessorTime = std::function<std::chrono::nanoseconds(pid_t process)>;

    // Does not wait until the process is ready. Null: errno says why it cannot be started.
    [[nodiscard]] static std::unique_ptr<IconWorker> start(const WorkerProgram& program,
                                                           const IconWorkerLimits& limits,
                                                           const ProcessorTime& processorTime, bool hasFonts);

    IconWorker(std::unique_ptr<WorkerProcess> process, FileDescriptor socket, const IconWorkerLimits& limits,
               ProcessorTime processorTime, bool hasFonts);

    // Whether the process runs and has sent nothing unasked.
    [[nodiscard]] bool isHealthy() const;

    // Whether the process is not ready yet. Not to be called while it decodes.
    [[nodiscard]] bool isStarting() const;

    // Makes a picture of a file's bytes, which are in sealed memory, and waits for it. The picture is valid
    // premultiplied ARGB, and no other process can write to it.
    [[nodiscard]] DecodingAttempt decode(const FileDescriptor& file, const DecodingRequest& request);

    // Kills the process. A waiting decode() returns at once.
    void interrupt();

private:
    using Kind = DecodingAttempt::Kind;

    struct Reply {
        std::optional<DecodingAnswer> answer; // none: the process ended, or its message is invalid
        bool wasKilled = false;               // from outside
    };

    [[nodiscard]] Reply receive();
    [[nodiscard]] std::optional<DecodingAttempt> awaitSlowAnswer(std::chrono::nanoseconds usedBefore) const;
    [[nodiscard]] std::optional<Kind> awaitReady();

    const FileDescriptor socket_;
    const IconWorkerLimits limits_;
    const ProcessorTime processorTime_;
    const bool hasFonts_;
    const QDeadlineTimer startEnds_;
    bool isReady_ = false;
    const std::unique_ptr<WorkerProcess> process_;
};

} // namespace amberquill::desktop
