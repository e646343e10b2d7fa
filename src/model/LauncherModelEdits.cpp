#include "localization/L.h"
#include "model/LauncherController.h"
#include "model/LauncherModel.h"
#include "model/LayoutEdits.h"
#include "motion/Animation.h"
#include "motion/Animations.h"

#include <QPointer>
#include <algorithm>

namespace amberquill {

namespace {

constexpr double newFolderOpensAfter = 0.3; // seconds

} // namespace

void LauncherModel::move(const QString& id, std::size_t to) {
    const auto from = LayoutEdits::indexOf(items_, id);
    if (from && *from != to && to < items_.size()) {
        draggedPlace_.expectAt(to);
        withAnimation(motion::move,
                      [&] { editItems([&](LaunchItems& items) { LayoutEdits::move(items, *from, to); }); });
    }
}

void LauncherModel::moveInFolder(const QUuid& folderID, const QString& path, std::size_t to) {
    const auto folder = folderIndex(folderID);
    if (!folder) {
        return;
    }
    const QStringList& apps = items_[*folder].asFolder()->apps;
    const qsizetype from = apps.indexOf(path);
    const auto place = static_cast<qsizetype>(to);
    if (from >= 0 && from != place && place < apps.size()) {
        appPlace_.expectAt(to);
        withAnimation(motion::move, [&] {
            editItems([&](LaunchItems& items) { LayoutEdits::moveInFolder(items, *folder, from, place); });
        });
    }
}

void LauncherModel::pullOut(const QString& path, const QUuid& folderID) {
    const auto folder = folderIndex(folderID);
    if (!folder || !items_[*folder].asFolder()->apps.contains(path)) {
        return;
    }
    std::size_t place = 0;
    withAnimation(motion::pullOut, [&] {
        setOpenFolderID(std::nullopt);
        editItems([&](LaunchItems& items) { place = LayoutEdits::pullOut(items, *folder, path); });
        draggedPlace_.expectAt(place);
        if (drag_) {
            DragInfo onPage = *drag_;
            onPage.fromFolder.reset();
            setDrag(onPage);
        }
    });
    if (const auto controller = controller_.lock()) {
        controller->endEditing();
    }
    turnToPage(static_cast<int>(place) / metrics().slotsPerPage());
}

void LauncherModel::merge(const QString& draggedID, const QString& targetID) {
    const auto dragged = LayoutEdits::indexOf(items_, draggedID);
    if (!dragged) {
        return;
    }
    std::optional<QUuid> made;
    withAnimation(motion::merge, [&] {
        editItems([&](LaunchItems& items) {
            made = LayoutEdits::merge(items, *dragged, targetID, L::newFolder());
        });
        clampPage();
    });
    if (made) {
        newFolderOpening_.cancel();
        newFolderOpening_ =
            services_.queue.postAfter(newFolderOpensAfter, [self = QPointer(this), id = *made] {
                if (self != nullptr) {
                    self->openFolder(id);
                }
            });
    }
}

} // namespace amberquill
