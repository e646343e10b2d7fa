#include "localization/L.h"
#include "model/LauncherController.h"
#include "model/LauncherModel.h"
#include "model/LayoutEdits.h"
#include "motion/Animation.h"
#include "motion/Animations.h"

#include <algorithm>

namespace amberquill {

namespace {

constexpr double newFolderOpensAfter = 0.3; // seconds

} // namespace

void LauncherModel::move(const QString& id, std::size_t to) {
    const auto from = LayoutEdits::indexOf(items_, id);
    if (from && *from != to && to < items_.size()) {
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
        apply(dragSession_.pulledOut(place));
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
        newFolderOpening_ =
            services_.queue.postAfter(newFolderOpensAfter, [this, id = *made] { openFolder(id); });
    }
}

std::optional<std::size_t> LauncherModel::folderIndex(const QUuid& id) const {
    return LayoutEdits::folderIndex(items_, id);
}

const Folder* LauncherModel::folder(const QUuid& id) const {
    const auto index = folderIndex(id);
    return index ? items_[*index].asFolder() : nullptr;
}

void LauncherModel::openFolder(const QUuid& id) {
    if (folder(id) != nullptr) {
        withAnimation(motion::openFolder, [this, id] { setOpenFolderID(id); });
    }
}

void LauncherModel::closeFolder() {
    if (!openFolderID_) {
        return;
    }
    if (const auto controller = controller_.lock()) {
        controller->endEditing();
    }
    withAnimation(motion::closeFolder, [this] { setOpenFolderID(std::nullopt); });
    save();
    focusSearch();
}

void LauncherModel::renameFolder(const QUuid& id, const QString& name) {
    const auto index = folderIndex(id);
    if (index && items_[*index].asFolder()->name != name) {
        editItems([&](LaunchItems& items) { LayoutEdits::rename(items, *index, name); });
    }
}

void LauncherModel::newEmptyFolder() {
    setSearchText({});
    editItems([](LaunchItems& items) {
        items.push_back(LaunchItem::folder({QUuid::createUuid(), L::newFolder(), {}}));
    });
    save();
    turnToPage(displayedPageCount() - 1);
}

} // namespace amberquill
