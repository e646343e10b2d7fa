#pragma once

#include "platform/linux/applications/icons/IconWorker.h"

#include <QImage>
#include <array>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <span>

namespace amberquill::desktop {

// What became of a file's bytes.
struct DecodedFile {
    enum class Kind {
        Picture,
        NoPicture,   // it is no icon, or a broken one
        Undecodable, // it keeps decoding from coming to an end, or ends the process that does it
        Unavailable, // nothing is known of it: no process could be had for it
    };
    Kind kind = Kind::Unavailable;
    QImage image; // a picture
};

// The processes that decode icons: two at most, started when there is something to decode. One of the two may
// be one that reads fonts, for drawings with text in them. Safe on any thread; those who ask wait until a
// process is free and has answered. When a process ends during a file, the file is tried again with another.
// It is undecodable when that one ends as well, or when it keeps a process working for too long.
class IconWorkers {
public:
    static constexpr int most = 2;

    struct Settings {
        WorkerProgram program;
        IconWorkerLimits limits = {};
        int count = 0; // how many at a time, at most `most`; 0: as many as there are cores for this process
        // After the program could not be started, it is not tried again for so long.
        std::chrono::steady_clock::duration pause = std::chrono::seconds(5);
        std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
        IconWorker::ProcessorTime processorTime = processorTimeOf;
    };

    // Nothing is started yet.
    explicit IconWorkers(Settings settings);
    IconWorkers(const IconWorkers&) = delete;
    IconWorkers& operator=(const IconWorkers&) = delete;
    // Nobody asks any more.
    ~IconWorkers();

    // Makes a picture of edge × edge device pixels of a file's bytes.
    [[nodiscard]] DecodedFile decode(std::span<const std::byte> file, int edge);

    // Something will be decoded soon: starts processes and does not wait for them. A core is left to those
    // who ask: with two, one process is started.
    void prepare();

    // Ends the processes that have nothing to do.
    void rest();

    // The launcher is about to end: ends all processes without waiting for them. All who wait are answered
    // at once, with Unavailable, as is every later question.
    void end();

private:
    struct Need {
        bool fonts = false;
        bool fresh = false; // a process that has not decoded anything
    };

    // Where a process is, or may be. Guarded by the mutex; the process of a place that is taken is in the
    // hands of the one who took it, but for its interruption.
    struct Place {
        std::unique_ptr<IconWorker> worker;
        bool hasFonts = false; // the process, or the one that is being started
        bool isTaken = false;
    };

    [[nodiscard]] Place* take(const Need& need);
    [[nodiscard]] Place* bestPlace(const Need& need);
    [[nodiscard]] bool isOneBusy() const;
    bool startIn(std::unique_lock<std::mutex>& lock, Place& place);
    static void clear(std::unique_lock<std::mutex>& lock, Place& place);
    void giveBack(Place& place, bool isUsable);
    void noteStart(DecodingAttempt::Kind kind);
    void pause(const char* why);

    const Settings settings_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::array<Place, most> allPlaces_;
    const std::span<Place> places_;
    bool hasEnded_ = false;
    int failedStarts_ = 0; // since one was ready
    std::chrono::steady_clock::time_point pausedUntil_ = std::chrono::steady_clock::time_point::min();
    bool hasWarned_ = false;
};

} // namespace amberquill::desktop
