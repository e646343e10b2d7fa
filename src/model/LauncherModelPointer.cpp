#include "model/LauncherController.h"
#include "model/LauncherModel.h"

#include <algorithm>
#include <utility>

namespace amberquill {

Hit LauncherModel::hitTest(const QPointF& point) const {
    const Folder* open = openFolderID_ ? folder(*openFolderID_) : nullptr;
    return amberquill::hitTest(point, {displayedItems(), metrics(), page_, scrollOffset_}, open);
}

void LauncherModel::pointerChanged(const PointerGesture& gesture) {
    // The first change of a gesture is its press.
    gestureIsOver_ = gestureIsOver_ && gesture.travel() > 0;
    if (gestureIsOver_) {
        return;
    }
    if (!pointerStart_) {
        draggedPlace_.forget();
        pointerStart_ = gesture.startLocation;
        pointerHit_ = hitTest(gesture.startLocation);
        if (const auto* item = std::get_if<Hit::GridItem>(&pointerHit_->what)) {
            setPressedID(item->id);
            expectDraggedAt(gesture.startLocation);
        } else if (const auto* app = std::get_if<Hit::FolderItem>(&pointerHit_->what)) {
            setPressedID(appItemId(app->path));
        }
    }
    if (!drag_ && gesture.travel() > tapTravel) {
        if (isSearching()) {
            setPressedID({}); // results cannot be rearranged
        } else {
            beginDrag(gesture.location);
        }
    }
    if (drag_ && !drag_->dropping) {
        tracker_.setLocation(gesture.location);
        updateDrag(gesture.location);
    }
}

void LauncherModel::expectDraggedAt(const QPointF& point) {
    const GridMetrics grid = metrics();
    if (const auto slot = grid.slotAt(point - QPointF(scrollOffset_, 0))) {
        draggedPlace_.expectAt(static_cast<std::size_t>(page_) *
                                   static_cast<std::size_t>(grid.slotsPerPage()) +
                               static_cast<std::size_t>(*slot));
    }
}

void LauncherModel::pointerEnded(const PointerGesture& gesture) {
    const std::optional<Hit> hit = std::exchange(pointerHit_, std::nullopt);
    pointerStart_.reset();
    gestureIsOver_ = false;
    if (drag_) {
        endDrag();
    } else if (hit && gesture.travel() <= tapTravel) {
        handleTap(*hit);
    }
    setPressedID({});
}

void LauncherModel::pointerCancelled() {
    gestureIsOver_ = gestureIsOver_ || pointerStart_.has_value();
    pointerStart_.reset();
    pointerHit_.reset();
    if (drag_) {
        abandonDrag();
    }
    setPressedID({});
}

void LauncherModel::activate(const QString& id) {
    const Folder* open = openFolderID_ ? folder(*openFolderID_) : nullptr;
    if (open == nullptr) {
        handleTap({Hit::GridItem{id}});
        return;
    }
    const auto path = std::find_if(open->apps.begin(), open->apps.end(),
                                   [&id](const QString& each) { return LaunchItem::app(each).id() == id; });
    if (path != open->apps.end()) {
        handleTap({Hit::FolderItem{*path}});
    }
}

void LauncherModel::handleTap(const Hit& hit) {
    if (const auto* tile = std::get_if<Hit::GridItem>(&hit.what)) {
        const LaunchItems& items = displayedItems();
        const auto item = std::find_if(items.begin(), items.end(),
                                       [tile](const LaunchItem& each) { return each.id() == tile->id; });
        if (item == items.end()) {
            return;
        }
        if (const Folder* tapped = item->asFolder()) {
            openFolder(tapped->id);
        } else {
            hideThenOpen(*item->asApp());
        }
    } else if (const auto* app = std::get_if<Hit::FolderItem>(&hit.what)) {
        hideThenOpen(app->path);
    } else if (std::holds_alternative<Hit::FolderPanel>(hit.what)) {
        if (const auto controller = controller_.lock()) {
            controller->endEditing();
        }
    } else if (std::holds_alternative<Hit::OutsideFolder>(hit.what)) {
        closeFolder();
    } else {
        hideThenOpen(std::nullopt);
    }
}

void LauncherModel::hideThenOpen(const std::optional<QString>& path) {
    if (const auto controller = controller_.lock()) {
        controller->hide(path);
    }
}

} // namespace amberquill
