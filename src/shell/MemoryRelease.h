#pragma once

#include "platform/MainQueue.h"

#include <QObject>
#include <functional>

namespace amberquill {

class LauncherModel;

// Releases memory once the launcher has been hidden and idle for a while: a launcher that runs all day is
// visible for moments only.
class MemoryRelease final : public QObject {
    Q_OBJECT

public:
    // Model and queue outlive this object. `release` frees what the next showing does not need at once.
    MemoryRelease(const LauncherModel& model, MainQueue& queue, std::function<void()> release,
                  QObject* parent = nullptr);

private:
    void restart();

    const LauncherModel& model_;
    MainQueue& queue_;
    std::function<void()> release_;
    DelayedWork nextRelease_;
};

} // namespace amberquill
