#pragma once

#include "platform/linux/applications/icons/WorkerProcess.h"
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
    std::chrono::milliseconds picture{2'000}; // for one, from the time it is asked for
    std::chrono::milliseconds end{1'000};     // for a process that has closed its socket, to say how it ends
};

// How one process fared with one file.
struct DecodingAttempt {
    enum class Kind {
        Picture,
        NoPicture,
        NeedsFonts,
        Failed,      // it crashed, ended or made no sense
        Overran,     // it took too long, and worked at it
        Starved,     // it took too long, and had hardly any processor time
        Killed,      // by somebody else, or it had gone before it was asked, or we had no memory for it
        StartFailed, // it has never been ready
        StartKilled, // somebody else killed it before it was ready
    };
    Kind kind = Kind::Failed;
    QImage image;          // a picture
    bool isUsable = false; // the process may be asked again
};

// A process that decodes icons, one at a time. What it says is believed as far as it makes sense, and no
// further: a hostile file may have taken it over. Any thread, but one at a time; interrupt() at any time.
class IconWorker {
public:
    using ProcessorTime = std::function<std::chrono::nanoseconds(pid_t process)>;

    // Does not wait until it is ready. Null: errno says why it cannot be started.
    [[nodiscard]] static std::unique_ptr<IconWorker> start(const WorkerProgram& program,
                                                           const IconWorkerLimits& limits,
                                                           const ProcessorTime& processorTime, bool hasFonts);

    IconWorker(std::unique_ptr<WorkerProcess> process, FileDescriptor socket, const IconWorkerLimits& limits,
               ProcessorTime processorTime, bool hasFonts);

    // Whether it waits for a request as it should: it is there, and has said nothing unasked.
    [[nodiscard]] bool isWell() const;

    // Whether it has not said anything yet. Asked while it does not decode.
    [[nodiscard]] bool isStarting() const;

    // Makes a picture of the file's bytes, which are in sealed memory, and waits for it. No colour of the
    // picture exceeds its alpha, and no other process can write to it.
    [[nodiscard]] DecodingAttempt decode(const FileDescriptor& file, const DecodingRequest& request);

    // Kills it. Whoever waits for it does so no longer.
    void interrupt();

private:
    using Kind = DecodingAttempt::Kind;

    // What it said.
    struct Word {
        std::optional<DecodingAnswer> answer; // none: it is gone, or what it said makes no sense
        bool wasKilled = false;               // by somebody else
    };

    [[nodiscard]] Word receive();
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
