#include "data/LayoutReconciler.h"
#include "model/LauncherModel.h"
#include "platform/MainQueue.h"

#include <QPointer>
#include <utility>

namespace amberquill {

void LauncherModel::willShow() {
    willHide();
    setOpenFolderID(std::nullopt);
    setSearchText({});
    setScrollOffset(0);
    clampPage();
    store_.tryAgain();
    refreshApps();
}

void LauncherModel::willHide() {
    pointerCancelled();
    newFolderOpening_.cancel();
}

void LauncherModel::refreshApps() {
    if (scanning_) {
        return;
    }
    scanning_ = true;
    services_.queue.compute(
        services_.scan,
        [self = QPointer(this)](const ScanResult& scan) {
            if (self != nullptr) {
                self->scanning_ = false;
                self->applyScan(scan.apps);
            }
        },
        Lane::Scan);
}

void LauncherModel::applyScan(const std::vector<AppInfo>& installed) {
    if (drag_) {
        deferredScan_ = installed;
        return;
    }
    if (!std::exchange(hasScanned_, true) || installed != installed_) {
        setInstalled(installed);
    }
    LaunchItems reconciled = LayoutReconciler::reconcile(items_, installed, std::nullopt, nameOrder());
    if (reconciled != items_) {
        setItems(std::move(reconciled));
        save();
    }
    clampPage();
    Q_EMIT scanned(installed);
}

void LauncherModel::setInstalled(const std::vector<AppInfo>& installed) {
    installed_ = installed;
    apps_.clear();
    apps_.reserve(static_cast<qsizetype>(installed.size()));
    for (const AppInfo& app : installed) {
        apps_.insert(app.path, app);
    }
    services_.rememberedNames.clear();
    indexNames();
    Q_EMIT namesChanged();
}

} // namespace amberquill
