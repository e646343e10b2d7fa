#pragma once

#include "platform/MainQueue.h"

#include <QString>

namespace amberquill {

// The one thing that waits to happen during a drag, known by its key. Asking for the same key again lets the
// clock run on; another key takes its place. Main thread only; gone, it does nothing any more.
class PendingIntent {
public:
    explicit PendingIntent(MainQueue& queue)
        : queue_(queue) {}
    ~PendingIntent() { cancel(); }

    PendingIntent(const PendingIntent&) = delete;
    PendingIntent& operator=(const PendingIntent&) = delete;

    // When `work` runs, nothing waits any longer: it may schedule anew.
    void schedule(const QString& key, double seconds, MainQueue::Work work);
    void cancel();

    // Empty while nothing waits.
    [[nodiscard]] const QString& key() const { return key_; }

private:
    MainQueue& queue_;
    QString key_;
    DelayedWork work_;
};

} // namespace amberquill
