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
                self->takeScan(scan);
            }
        },
        Lane::Scan);
}

// What a scan does not find may still stay for a while: another scan decides about it.
void LauncherModel::takeScan(const ScanResult& scan) {
    std::vector<AppInfo> installed = scan.apps;
    for (const QString& path : missing_.staying(items_, scan, services_.queue.now())) {
        installed.push_back({path, appName(path)});
    }
    nextDecision_.cancel();
    if (const auto decision = missing_.nextDecision()) {
        nextDecision_ = services_.queue.postAfter(*decision - services_.queue.now(), [self = QPointer(this)] {
            if (self != nullptr) {
                self->refreshApps();
            }
        });
    }
    applyScan(installed);
}

void LauncherModel::applyScan(const std::vector<AppInfo>& installed) {
    if (drag_) {
        deferredScan_ = installed;
        return;
    }
    if (!std::exchange(hasScanned_, true) || installed != installed_) {
        setInstalled(installed);
    }
    const LaunchItems known = places_.putBack(items_, installed);
    LaunchItems reconciled = LayoutReconciler::reconcile(known, installed, std::nullopt, nameOrder());
    if (reconciled != items_) {
        rememberPlaces(known, reconciled);
        setItems(std::move(reconciled));
        save();
    }
    clampPage();
    applyWaitingImport();
    Q_EMIT scanned(installed);
}

void LauncherModel::rememberPlaces(const LaunchItems& before, const LaunchItems& after) {
    if (places_.remember(before, after, services_.queue.date()) && !awaitsLayout_) {
        store_.savePlaces(places_.remembered());
    }
}

// Of an arrangement that the user has given up.
void LauncherModel::forgetPlaces() {
    if (!places_.remembered().empty()) {
        places_.clear();
        if (!awaitsLayout_) {
            store_.savePlaces({});
        }
    }
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
