#include "data/LayoutReconciler.h"
#include "model/LauncherModel.h"
#include "model/ModelLog.h"
#include "platform/MainQueue.h"

#include <QSet>
#include <utility>

namespace amberquill {

namespace {

QSet<QString> pathsIn(const LaunchItems& items) {
    QSet<QString> paths;
    for (const LaunchItem& item : items) {
        if (const Folder* folder = item.asFolder()) {
            paths.unite({folder->apps.begin(), folder->apps.end()});
        } else {
            paths.insert(*item.asApp());
        }
    }
    return paths;
}

void logChange(const LaunchItems& before, const LaunchItems& after) {
    if (modelLog().isDebugEnabled()) {
        const QSet<QString> old = pathsIn(before);
        const QSet<QString> now = pathsIn(after);
        qCDebug(modelLog) << "applications that left the layout:" << (old - now).values();
        qCDebug(modelLog) << "applications that came or came back:" << (now - old).values();
    }
}

} // namespace

void LauncherModel::willShow() {
    endTransientState("showing the launcher");
    setOpenFolderID(std::nullopt);
    setSearchText({});
    setScrollOffset(0);
    clampPage();
    store_.tryAgain();
    refreshApps();
}

void LauncherModel::willHide() {
    endTransientState("hiding the launcher");
}

void LauncherModel::endTransientState(const char* cause) {
    cancelGesture(cause);
    newFolderOpening_.cancel();
}

void LauncherModel::refreshApps() {
    if (scanning_) {
        return;
    }
    scanning_ = true;
    services_.queue.compute(
        context_, services_.scan,
        [this](const ScanResult& scan) {
            scanning_ = false;
            takeScan(scan);
        },
        Lane::Scan);
}

// Keeps missing applications for a while, and plans the scan that decides about them.
void LauncherModel::takeScan(const ScanResult& scan) {
    std::vector<AppInfo> installed = scan.apps;
    for (const QString& path : missing_.staying(items_, scan, services_.queue.now())) {
        qCDebug(modelLog) << path << "was not found; it stays until another scan decides";
        installed.push_back({path, appName(path)});
    }
    nextDecision_.cancel();
    if (const auto decision = missing_.nextDecision()) {
        nextDecision_ =
            services_.queue.postAfter(*decision - services_.queue.now(), [this] { refreshApps(); });
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
        logChange(items_, reconciled);
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

// The user has replaced the arrangement that the places belong to.
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
