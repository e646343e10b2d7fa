#include "shell/MemoryRelease.h"

#include "model/LauncherModel.h"

#include <QPointer>

namespace amberquill {

namespace {

// Seconds. Whoever hides the launcher only to show it again at once is not made to wait for anything.
constexpr double restsAfter = 3;

} // namespace

MemoryRelease::MemoryRelease(const LauncherModel& model, MainQueue& queue, std::function<void()> release,
                             QObject* parent)
    : QObject(parent)
    , model_(model)
    , queue_(queue)
    , release_(std::move(release)) {
    connect(&model, &LauncherModel::presentedChanged, this, &MemoryRelease::wait);
    connect(&model, &LauncherModel::scanned, this, &MemoryRelease::wait);
}

void MemoryRelease::wait() {
    waiting_.cancel();
    if (model_.presented()) {
        return;
    }
    waiting_ = queue_.postAfter(restsAfter, [self = QPointer(this)] {
        if (self != nullptr) {
            self->release_();
        }
    });
}

} // namespace amberquill
