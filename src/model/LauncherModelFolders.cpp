#include "localization/L.h"
#include "model/LauncherController.h"
#include "model/LauncherModel.h"
#include "model/LayoutEdits.h"
#include "motion/Animation.h"
#include "motion/Animations.h"

namespace amberquill {

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
