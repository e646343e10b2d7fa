// applications/icons/workers/: the launcher's side of decoding icons. Turns a file's bytes into pixels by
// amberquill-icons, the program in decoder/process, so that a hostile file reaches nothing of the launcher.
//
// - IconWorkerPool has up to two processes and chooses one for each file: begin reading here. It decides when
//   a file is tried again, and when it is undecodable.
// - IconWorker talks to one process: one request at a time, with time limits. It validates each answer.
// - WorkerProcess starts, kills and reaps the process. WorkerProgram says which file that is.
//
// Limits: 10 s for a process to start, 2 s for a picture (10 s on a busy machine), two crashes for a file.
// Failures that are not the file's (no processor time, a kill from outside, a failed start) do not count
// against it. IconWorkerPool is safe on any thread, and decode() blocks. The messages are those of
// decoder/channel. The log category amberquill.decoder names each failed attempt with the reason.
#pragma once

#include "platform/linux/applications/icons/workers/IconWorker.h"

#include <QImage>
#include <array>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <span>

namespace amberquill::desktop {

// The outcome for one file.
struct DecodedFile {
    enum class Kind {
        Picture,
        NoPicture,   // not an icon, or a broken one
        Undecodable, // it crashes the decoding process, or takes too long
        Unavailable, // unknown: no process could be started
    };
    Kind kind = Kind::Unavailable;
    QImage image; // for Picture
};

// The processes that decode icons: at most two, started on demand. One of them may read fonts, for drawings
// with text. Safe on any thread; decode() blocks until a process is free and has answered. A file that ends
// its process is tried once more in a new one. It is undecodable if that one ends as well, or if it keeps a
// process busy for too long.
class IconWorkerPool {
public:
    static constexpr int maximumWorkers = 2;

    struct Settings {
        WorkerProgram program;
        IconWorkerLimits limits = {};
        int count = 0; // how many processes, at most `maximumWorkers`; 0: one per core
        // How long a program that could not be started is not tried again.
        std::chrono::steady_clock::duration pause = std::chrono::seconds(5);
        std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
        IconWorker::ProcessorTime processorTime = processorTimeOf;
    };

    // Starts no process yet.
    explicit IconWorkerPool(Settings settings);
    IconWorkerPool(const IconWorkerPool&) = delete;
    IconWorkerPool& operator=(const IconWorkerPool&) = delete;
    // No call to decode() may be under way.
    ~IconWorkerPool();

    // Makes a picture of edge × edge device pixels from a file's bytes.
    [[nodiscard]] DecodedFile decode(std::span<const std::byte> file, int edge);

    // Starts processes ahead of the first decode(), without waiting for them. Leaves one core to the callers:
    // with two cores, one process is started.
    void prepare();

    // Ends idle processes.
    void rest();

    // Kills all processes without waiting for them. Calls under way and later ones return Unavailable at
    // once.
    void shutDown();

private:
    struct Requirement {
        bool fonts = false;
        bool fresh = false; // a process that has not decoded anything
    };

    // Room for one process. Guarded by the mutex. The process in a taken slot is used by the thread that took
    // it; other threads only interrupt it.
    struct Slot {
        std::unique_ptr<IconWorker> worker;
        bool hasFonts = false; // the process, or the one that is being started
        bool isTaken = false;
    };

    [[nodiscard]] Slot* acquire(const Requirement& requirement);
    [[nodiscard]] Slot* bestFreeSlot(const Requirement& requirement);
    [[nodiscard]] bool isAnyBusy() const;
    bool startIn(std::unique_lock<std::mutex>& lock, Slot& slot);
    static void clear(std::unique_lock<std::mutex>& lock, Slot& slot);
    void release(Slot& slot, bool isUsable);
    void noteStart(DecodingAttempt::Kind kind);
    void pause(const char* reason);

    const Settings settings_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::array<Slot, maximumWorkers> allSlots_;
    const std::span<Slot> slots_;
    bool isShutDown_ = false;
    int failedStarts_ = 0; // in a row
    std::chrono::steady_clock::time_point pausedUntil_ = std::chrono::steady_clock::time_point::min();
    bool hasWarned_ = false;
};

} // namespace amberquill::desktop
