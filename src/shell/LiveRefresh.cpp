#include "shell/LiveRefresh.h"

#include "platform/FolderWatcher.h"
#include "platform/MainQueue.h"
#include "shell/ShellLog.h"

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
    services_.watcher.watch(folders, context_.bind([this] { refresh(); }));
}

void LiveRefresh::refresh() {
    qCDebug(shellLog, "scanning the applications again");
    // A scan under way may have read the changed folder already.
    changedDuringScan_ = services_.model.isScanning();
    services_.model.refreshApps();
    for (const double seconds : iconRetries) {
        services_.queue.thenAfter(context_, seconds, [this] { services_.retryIcons(); });
    }
}

} // namespace amberquill
