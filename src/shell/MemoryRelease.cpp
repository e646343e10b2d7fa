#include "shell/MemoryRelease.h"

#include "model/LauncherModel.h"

namespace amberquill {

namespace {

// Seconds. Showing the launcher again soon after hiding it finds everything still in memory.
constexpr double idleTime = 3;

} // namespace

MemoryRelease::MemoryRelease(const LauncherModel& model, MainQueue& queue, std::function<void()> release,
                             QObject* parent)
    : QObject(parent)
    , model_(model)
    , queue_(queue)
    , release_(std::move(release)) {
    connect(&model, &LauncherModel::presentedChanged, this, &MemoryRelease::restart);
    connect(&model, &LauncherModel::scanned, this, &MemoryRelease::restart);
}

void MemoryRelease::restart() {
    nextRelease_.cancel();
    if (!model_.presented()) {
        nextRelease_ = queue_.postAfter(idleTime, [this] { release_(); });
    }
}

} // namespace amberquill
