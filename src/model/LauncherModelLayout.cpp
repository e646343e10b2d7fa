#include "data/LayoutCoding.h"
#include "data/LayoutFile.h"
#include "data/LayoutReconciler.h"
#include "localization/L.h"
#include "model/LauncherModel.h"
#include "model/LayoutEdits.h"
#include "model/ModelLog.h"
#include "motion/Animation.h"
#include "motion/Animations.h"
#include "platform/MainQueue.h"

#include <algorithm>

namespace amberquill {

namespace {

// The bounds of an imported grid.
constexpr qint64 leastColumns = 3;
constexpr qint64 mostColumns = 12;
constexpr qint64 leastRows = 2;
constexpr qint64 mostRows = 10;

} // namespace

QByteArray LauncherModel::exportLayoutData() const {
    const QString& home = services_.homes.own;
    const LayoutFile file{
        .exportedAt = services_.queue.date(),
        .columns = columns_,
        .rows = rows_,
        .items = withPaths(items_, [&home](const QString& path) { return homeRelative(path, home); })};
    return encodeLayoutFile(file);
}

std::optional<InvalidLayoutFile> LauncherModel::importLayout(QByteArrayView data) {
    auto file = decodeLayoutFile(data);
    if (!file || file->format != LayoutFile::ownFormat) {
        qCDebug(modelLog) << "import refused:" << (file ? "another format" : "not a layout file");
        return InvalidLayoutFile{};
    }
    waitingImport_ = *std::move(file);
    if (hasScanned_) {
        applyWaitingImport();
    } else {
        qCDebug(modelLog) << "the import waits for the first scan";
    }
    return std::nullopt;
}

void LauncherModel::applyWaitingImport() {
    std::optional<LayoutFile> file = std::exchange(waitingImport_, std::nullopt);
    if (!file) {
        return;
    }
    endTransientState("an import");
    setOpenFolderID(std::nullopt);
    setSearchText({});

    keepCopy(LayoutHistory::Reason::Import);
    TildeExpansion tilde(services_.homes);
    LaunchItems imported =
        withPaths(std::move(file->items), [&tilde](const QString& path) { return tilde.expand(path); });
    LayoutEdits::separateFolders(imported);
    LaunchItems reconciled = LayoutReconciler::reconcile(imported, installed_, L::otherApps(), nameOrder());
    // Applications of the file that are not installed yet take their places when they are.
    forgetPlaces();
    rememberPlaces(imported, reconciled);
    layoutIsReplaced_ = true;
    replaceLayout(std::move(reconciled), [&] {
        setGrid(static_cast<int>(std::clamp(file->columns, leastColumns, mostColumns)),
                static_cast<int>(std::clamp(file->rows, leastRows, mostRows)));
    });
    turnToPage(0);
}

void LauncherModel::resetLayout() {
    waitingImport_.reset();
    keepCopy(LayoutHistory::Reason::Reset);
    forgetPlaces();
    layoutIsReplaced_ = true;
    replaceLayout(LayoutReconciler::reconcile({}, installed_, std::nullopt, nameOrder()));
    turnToPage(0);
}

void LauncherModel::sortByName() {
    keepCopy(LayoutHistory::Reason::Sort);
    std::vector<QString> names;
    names.reserve(items_.size());
    for (const LaunchItem& item : items_) {
        names.push_back(name(item));
    }
    LaunchItems sorted;
    sorted.reserve(items_.size());
    for (const std::size_t position : nameOrder().order(names)) {
        sorted.push_back(items_[position]);
    }
    replaceLayout(std::move(sorted));
}

void LauncherModel::takeLateLayout(StoredLayout stored) {
    if (!awaitsLayout_) {
        return;
    }
    if (drag_) {
        qCDebug(modelLog) << "the late layout waits for the drag's end";
        deferredLayout_ = std::move(stored);
        return;
    }
    awaitsLayout_ = false;
    const bool isKnown = stored.items.has_value();
    LaunchItems items = store_.start(std::move(stored));
    std::vector<RememberedItem> places = store_.takePlaces();
    if (layoutIsReplaced_ || !isKnown) {
        qCDebug(modelLog) << "late layout not taken:"
                          << (isKnown ? "an import or a reset has replaced it" : "there is none");
        store_.savePlaces(places_.remembered());
        save();
        return;
    }
    qCDebug(modelLog) << "late layout taken:" << items.size() << "items";
    places_ = PlaceMemory(std::move(places), services_.queue.date());
    withAnimation(motion::replaceLayout, [&] {
        setItems(std::move(items));
        clampPage();
    });
    // The last scan was compared with other items.
    refreshApps();
}

void LauncherModel::keepCopy(LayoutHistory::Reason reason) {
    // Before the late layout has come, there is no arrangement to keep. The late layout itself is copied when
    // it is replaced.
    if (!awaitsLayout_) {
        history_.keep({encodeItems(items_), columns_, rows_}, reason);
    }
}

void LauncherModel::replaceLayout(LaunchItems items, const std::function<void()>& before) {
    withAnimation(motion::replaceLayout, [&] {
        before();
        setItems(std::move(items));
    });
    save();
}

} // namespace amberquill
