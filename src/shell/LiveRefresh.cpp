#include "shell/LiveRefresh.h"

#include "platform/FolderWatcher.h"
#include "platform/MainQueue.h"

#include <QPointer>

namespace amberquill {

LiveRefresh::LiveRefresh(Services services, QObject* parent)
    : QObject(parent)
    , services_(std::move(services)) {
    connect(&services_.model, &LauncherModel::scanned, this, [this] {
        if (std::exchange(changedDuringScan_, false)) {
            services_.model.refreshApps();
        }
    });
}

void LiveRefresh::watch(const QStringList& folders) {
    services_.watcher.watch(folders, [self = QPointer(this)] {
        if (self != nullptr) {
            self->refresh();
        }
    });
}

void LiveRefresh::refresh() {
    // A scan that is under way may have passed the place of the change already.
    changedDuringScan_ = services_.model.isScanning();
    services_.model.refreshApps();
    for (const double seconds : iconRetries) {
        services_.queue.thenAfter(context_, seconds, [this] { services_.retryIcons(); });
    }
}

} // namespace amberquill
