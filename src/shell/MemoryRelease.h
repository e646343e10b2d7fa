#pragma once

#include "platform/MainQueue.h"

#include <QObject>
#include <functional>

namespace amberquill {

class LauncherModel;

// Has memory given back once the launcher is hidden and nothing has happened for a while: a launcher that is
// used all day is seen for moments only.
class MemoryRelease final : public QObject {
    Q_OBJECT

public:
    // All outlive it. `release` gives back what the next showing can do without.
    MemoryRelease(const LauncherModel& model, MainQueue& queue, std::function<void()> release,
                  QObject* parent = nullptr);

private:
    void wait();

    const LauncherModel& model_;
    MainQueue& queue_;
    std::function<void()> release_;
    DelayedWork waiting_;
};

} // namespace amberquill
