#include "model/DragSession.h"

#include "data/FolderMetrics.h"
#include "model/Pages.h"

#include <algorithm>
#include <utility>

namespace amberquill {

namespace {

// The index below `count` that matches, searched from `index` outwards; `index` becomes it. A mouse sends a
// thousand moves in a second, layouts may hold 100,000 items, and nearly always nothing has changed: a move
// takes 0.17 µs like this and 0.30 µs with a hash of the identities, which each change of the layout would
// make anew (22 µs for 100 items, 51 ms for 100,000).
template<typename Matches>
std::optional<std::size_t> searchFrom(std::size_t& index, std::size_t count, Matches matches) {
    const std::size_t start = std::min(index, count);
    for (std::size_t distance = 0; distance <= std::max(start, count - start); ++distance) {
        for (const std::size_t candidate : {start + distance, start - distance}) {
            if (candidate < count && matches(candidate)) {
                index = candidate;
                return candidate;
            }
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> indexOfItem(const LaunchItems& items, const QString& id, std::size_t& lastIndex) {
    return searchFrom(lastIndex, items.size(), [&](std::size_t index) { return items[index].hasId(id); });
}

FolderMetrics panelOf(const Folder& folder, const DragScene& scene) {
    return FolderMetrics::of(static_cast<int>(folder.apps.size()), scene.metrics);
}

} // namespace

DragSession::Actions DragSession::pointerChanged(const PointerGesture& gesture, const DragScene& scene) {
    Actions actions;
    isCancelled_ = isCancelled_ && gesture.travel() > 0;
    if (isCancelled_) {
        return actions;
    }
    if (!press_) {
        press(gesture.startLocation, scene, actions);
    }
    if (!drag_ && gesture.travel() > tapTravel) {
        if (scene.isSearching) {
            actions.append(SetPressed{}); // results cannot be rearranged
        } else {
            beginDrag(gesture.location, scene, actions);
        }
    }
    return actions;
}

DragSession::Actions DragSession::dragMoved(const QPointF& pointer, const DragScene& scene) {
    Actions actions;
    if (drag_ && !drag_->dropping) {
        pointer_ = pointer;
        actions.append(SetPointer{pointer});
        updateDrag(scene, actions);
    }
    return actions;
}

DragSession::Actions DragSession::pointerReleased(const PointerGesture& gesture, const DragScene& scene) {
    Actions actions;
    const std::optional<Press> pressed = std::exchange(press_, std::nullopt);
    isCancelled_ = false;
    if (drag_) {
        endDrag(scene, actions);
    } else if (pressed && gesture.travel() <= tapTravel) {
        actions.append(Tap{pressed->hit});
    }
    actions.append(SetPressed{});
    return actions;
}

DragSession::Actions DragSession::pointerCancelled() {
    Actions actions;
    isCancelled_ = isCancelled_ || press_.has_value();
    press_.reset();
    if (drag_) {
        cancelPending(actions);
        actions.append(StopGlide{});
        clearMergeTarget(actions);
        if (!drag_->dropping) {
            actions.append(Save{});
        }
        finish(actions);
    }
    actions.append(SetPressed{});
    return actions;
}

DragSession::Actions DragSession::timerFired() {
    Actions actions;
    if (const std::optional<Pending> due = std::exchange(pending_, std::nullopt)) {
        if (const auto* marked = std::get_if<SetMergeTarget>(&due->action)) {
            mergeTargetID_ = marked->id;
        }
        actions.append(due->action);
    }
    return actions;
}

DragSession::Actions DragSession::glideEnded() {
    Actions actions;
    if (drag_ && drag_->dropping) {
        finish(actions);
    }
    return actions;
}

DragSession::Actions DragSession::pulledOut(std::size_t index) {
    Actions actions;
    if (drag_) {
        draggedIndex_ = index;
        drag_->fromFolder.reset();
        actions.append(SetDrag{drag_});
    }
    return actions;
}

DragSession::Actions DragSession::cancelPending() {
    Actions actions;
    cancelPending(actions);
    return actions;
}

void DragSession::press(const QPointF& location, const DragScene& scene, Actions& actions) {
    const Folder* open = scene.openFolderID ? folder(*scene.openFolderID, scene) : nullptr;
    press_ = {location,
              hitTest(location, {scene.displayedItems, scene.metrics, scene.page, scene.scrollOffset}, open)};
    if (const auto* tile = std::get_if<Hit::GridItem>(&press_->hit.what)) {
        const int slot = scene.metrics.slotAt(location - QPointF(scene.scrollOffset, 0)).value_or(0);
        const int index = scene.page * scene.metrics.slotsPerPage() + slot;
        draggedIndex_ = static_cast<std::size_t>(index);
        actions.append(SetPressed{tile->id});
    } else if (const auto* app = std::get_if<Hit::FolderItem>(&press_->hit.what)) {
        actions.append(SetPressed{appItemId(app->path)});
    }
}

void DragSession::beginDrag(const QPointF& pointer, const DragScene& scene, Actions& actions) {
    if (const auto* app = std::get_if<Hit::FolderItem>(&press_->hit.what)) {
        drag_ = dragInFolder(app->path, scene);
    } else if (const auto* tile = std::get_if<Hit::GridItem>(&press_->hit.what)) {
        drag_ = dragOfTile(tile->id, scene);
    }
    if (!drag_) {
        return;
    }
    pointer_ = pointer;
    actions.append(SetDrag{drag_});
    actions.append(SetPressed{});
    actions.append(StopScrolling{});
    actions.append(SetPointer{pointer});
    updateDrag(scene, actions);
}

std::optional<DragInfo> DragSession::dragOfTile(const QString& id, const DragScene& scene) {
    const auto index = indexOfItem(scene.items, id, draggedIndex_);
    if (!index) {
        return std::nullopt;
    }
    const int slot = static_cast<int>(*index) - scene.page * scene.metrics.slotsPerPage();
    const QPointF center = iconCenter(scene.metrics, slot) + QPointF(scene.scrollOffset, 0);
    return DragInfo{id, scene.items[*index], std::nullopt, press_->location - center};
}

std::optional<DragInfo> DragSession::dragInFolder(const QString& path, const DragScene& scene) {
    const Folder* open = scene.openFolderID ? folder(*scene.openFolderID, scene) : nullptr;
    const auto index = open != nullptr ? indexInFolder(*open, path) : std::nullopt;
    if (!index) {
        return std::nullopt;
    }
    const QPointF center = iconCenter(panelOf(*open, scene), static_cast<int>(*index));
    return DragInfo{appItemId(path), LaunchItem::app(path), open->id, press_->location - center};
}

void DragSession::updateDrag(const DragScene& scene, Actions& actions) {
    if (drag_->fromFolder) {
        updateInFolder(scene, actions);
    } else {
        apply(pageDragStep(pageDrag(scene), pointer_), scene, actions);
    }
}

void DragSession::updateInFolder(const DragScene& scene, Actions& actions) {
    const Folder* from = folder(*drag_->fromFolder, scene);
    const QString* path = drag_->item.asApp();
    if (from == nullptr || path == nullptr) {
        return;
    }
    const DragStep step = folderDragStep(panelOf(*from, scene), static_cast<std::size_t>(from->apps.size()),
                                         indexInFolder(*from, *path), pointer_);
    apply(step, scene, actions);
    if (step.pullsOut) {
        actions.append(PullOut{*path, from->id});
    }
}

void DragSession::apply(const DragStep& step, const DragScene& scene, Actions& actions) {
    if (step.cancelsPending) {
        cancelPending(actions);
    }
    if (step.clearsTarget) {
        clearMergeTarget(actions);
    }
    if (step.intent && !(pending_ && pending_->key == step.intent->key)) {
        schedule(*step.intent, scene, actions);
    }
}

void DragSession::schedule(const DragIntent& intent, const DragScene& scene, Actions& actions) {
    const auto action = [&]() -> Action {
        switch (intent.kind) {
        case DragIntent::Kind::FlipPage:
            return FlipPage{static_cast<int>(intent.place)};
        case DragIntent::Kind::MarkTarget:
            targetIndex_ = intent.place;
            return SetMergeTarget{scene.items[intent.place].id()};
        case DragIntent::Kind::Move:
            return Move{drag_->id, intent.place};
        case DragIntent::Kind::MoveInFolder:
            break;
        }
        return MoveInFolder{*drag_->fromFolder, *drag_->item.asApp(), intent.place};
    };
    pending_ = {intent.key, action()};
    actions.append(StartTimer{intent.seconds});
}

void DragSession::endDrag(const DragScene& scene, Actions& actions) {
    cancelPending(actions);
    if (drag_->dropping) {
        return; // an earlier drop: its glide ends the drag
    }
    const auto target = drag_->fromFolder ? std::nullopt : groupCandidate(pageDrag(scene), pointer_);
    const auto center = target ? std::nullopt : landing(scene);
    clearMergeTarget(actions);
    if (target) {
        const QString dragged = drag_->id;
        drag_.reset();
        actions.append(SetDrag{});
        actions.append(Merge{dragged, *target});
        actions.append(Save{});
        actions.append(ApplyDeferred{});
        return;
    }
    actions.append(Save{});
    if (center) {
        drag_->dropping = true;
        actions.append(Glide{*drag_, *center + drag_->grabOffset});
    } else {
        finish(actions);
    }
}

void DragSession::finish(Actions& actions) {
    drag_.reset();
    actions.append(SetDrag{});
    actions.append(ApplyDeferred{});
}

void DragSession::cancelPending(Actions& actions) {
    if (pending_) {
        pending_.reset();
        actions.append(StopTimer{});
    }
}

void DragSession::clearMergeTarget(Actions& actions) {
    if (!mergeTargetID_.isEmpty()) {
        mergeTargetID_.clear();
        actions.append(SetMergeTarget{});
    }
}

PageDrag DragSession::pageDrag(const DragScene& scene) {
    return {.items = scene.items,
            .metrics = scene.metrics,
            .page = scene.page,
            .pageCount = pageCount(scene.displayedItems.size(), scene.metrics.slotsPerPage()),
            .dragsFolder = drag_->item.isFolder(),
            .grabOffset = drag_->grabOffset,
            .dragged = indexOfItem(scene.items, drag_->id, draggedIndex_),
            .markedTarget = mergeTargetID_,
            .target = mergeTargetID_.isEmpty() ? std::nullopt
                                               : indexOfItem(scene.items, mergeTargetID_, targetIndex_)};
}

// Where the icon glides to; none: its item is gone, or lies on another page.
std::optional<QPointF> DragSession::landing(const DragScene& scene) {
    if (drag_->fromFolder) {
        const Folder* from = folder(*drag_->fromFolder, scene);
        const auto index = from != nullptr ? indexInFolder(*from, *drag_->item.asApp()) : std::nullopt;
        return index ? std::optional(iconCenter(panelOf(*from, scene), static_cast<int>(*index)))
                     : std::nullopt;
    }
    const auto slots = static_cast<std::size_t>(scene.metrics.slotsPerPage());
    const auto index = indexOfItem(scene.items, drag_->id, draggedIndex_);
    if (!index || *index / slots != static_cast<std::size_t>(scene.page)) {
        return std::nullopt;
    }
    return iconCenter(scene.metrics, static_cast<int>(*index % slots));
}

const Folder* DragSession::folder(const QUuid& id, const DragScene& scene) {
    const auto index = searchFrom(folderIndex_, scene.items.size(), [&](std::size_t candidate) {
        const Folder* there = scene.items[candidate].asFolder();
        return there != nullptr && there->id == id;
    });
    return index ? scene.items[*index].asFolder() : nullptr;
}

std::optional<std::size_t> DragSession::indexInFolder(const Folder& folder, const QString& path) {
    return searchFrom(appIndex_, static_cast<std::size_t>(folder.apps.size()), [&](std::size_t candidate) {
        return folder.apps[static_cast<qsizetype>(candidate)] == path;
    });
}

} // namespace amberquill
