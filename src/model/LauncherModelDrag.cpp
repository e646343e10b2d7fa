#include "model/LauncherModel.h"
#include "model/LayoutEdits.h"
#include "motion/Animation.h"
#include "motion/Animations.h"

#include <QPointer>
#include <utility>

namespace amberquill {

namespace {

constexpr double glideEndsAfter = 0.19; // seconds; a moment longer than the glide

} // namespace

void LauncherModel::beginDrag(const QPointF& pointer) {
    if (!pointerStart_ || !pointerHit_) {
        return;
    }
    std::optional<DragInfo> begun;
    if (const auto* app = std::get_if<Hit::FolderItem>(&pointerHit_->what)) {
        begun = folderDragOf(app->path);
    } else if (const auto* tile = std::get_if<Hit::GridItem>(&pointerHit_->what)) {
        begun = pageDragOf(tile->id);
    }
    if (!begun) {
        return;
    }
    folderPlace_.forget();
    appPlace_.forget();
    setDrag(begun);
    setPressedID({});
    setScrollOffset(0);
    tracker_.setLocation(pointer);
    updateDrag(pointer);
}

std::optional<DragInfo> LauncherModel::pageDragOf(const QString& id) {
    const auto index = draggedIndex(id);
    if (!index) {
        return std::nullopt;
    }
    const GridMetrics grid = metrics();
    const int slot = static_cast<int>(*index) - page_ * grid.slotsPerPage();
    const QPointF center = iconCenter(grid, slot) + QPointF(scrollOffset_, 0);
    return DragInfo{id, items_[*index], std::nullopt, *pointerStart_ - center};
}

std::optional<DragInfo> LauncherModel::folderDragOf(const QString& path) {
    const Folder* open = openFolderID_ ? folder(*openFolderID_) : nullptr;
    const qsizetype index = open != nullptr ? open->apps.indexOf(path) : -1;
    if (index < 0) {
        return std::nullopt;
    }
    const FolderMetrics panel = FolderMetrics::of(static_cast<int>(open->apps.size()), metrics());
    const QPointF center = iconCenter(panel, static_cast<int>(index));
    return DragInfo{appItemId(path), LaunchItem::app(path), open->id, *pointerStart_ - center};
}

void LauncherModel::updateDrag(const QPointF& pointer) {
    if (!drag_) {
        return;
    }
    if (drag_->fromFolder) {
        updateFolderDrag(*drag_->fromFolder, pointer);
    } else {
        take(pageDragStep(pageDrag(*drag_), pointer));
    }
}

void LauncherModel::updateFolderDrag(const QUuid& folderID, const QPointF& pointer) {
    const Folder* from = draggedFrom(folderID);
    const QString* path = drag_->item.asApp();
    if (from == nullptr || path == nullptr) {
        return;
    }
    const auto count = static_cast<std::size_t>(from->apps.size());
    const FolderMetrics panel = FolderMetrics::of(static_cast<int>(count), metrics());
    const DragStep step = folderDragStep(panel, count, indexInFolder(*from, *path), pointer);
    take(step);
    if (step.pullsOut) {
        // By value: the drag itself changes.
        pullOut(QString(*path), QUuid(folderID));
    }
}

void LauncherModel::take(const DragStep& step) {
    if (step.cancelsPending) {
        cancelPending();
    }
    if (step.clearsTarget) {
        clearMergeTarget();
    }
    if (step.waits && step.waits->key != pending_.key()) {
        schedule(*step.waits);
    }
}

void LauncherModel::schedule(const DragIntent& intent) {
    const auto wait = [this, &intent](MainQueue::Work work) {
        pending_.schedule(intent.key, intent.seconds, std::move(work));
    };
    const std::size_t place = intent.place;
    switch (intent.kind) {
    case DragIntent::Kind::FlipPage:
        wait([this, place] { turnToPage(static_cast<int>(place)); });
        break;
    case DragIntent::Kind::MarkTarget:
        wait([this, place, id = items_[place].id()] {
            if (mergeTargetID_ != id) {
                setMergeTarget(id);
                targetPlace_.expectAt(place);
            }
        });
        break;
    case DragIntent::Kind::Move:
        wait([this, id = drag_->id, place] { move(id, place); });
        break;
    case DragIntent::Kind::MoveInFolder:
        wait([this, folder = *drag_->fromFolder, path = *drag_->item.asApp(), place] {
            moveInFolder(folder, path, place);
        });
        break;
    }
}

void LauncherModel::endDrag() {
    cancelPending();
    if (!drag_ || drag_->dropping) {
        return; // the glide under way ends by itself
    }
    const DragInfo dragged = *drag_;
    if (!dragged.fromFolder && !dragged.item.isFolder()) {
        if (const auto candidate = groupCandidate(dragged, tracker_.location())) {
            clearMergeTarget();
            setDrag(std::nullopt);
            merge(dragged.id, *candidate);
            save();
            applyDeferredScan();
            return;
        }
    }
    clearMergeTarget();
    save();
    if (const auto center = landing(dragged)) {
        glideTo(*center);
    } else {
        finishDrag();
    }
}

void LauncherModel::glideTo(const QPointF& iconCenter) {
    DragInfo dropping = *drag_;
    dropping.dropping = true;
    withAnimation(motion::dropGlide, [&] {
        setDrag(dropping);
        tracker_.setLocation(iconCenter + dropping.grabOffset);
    });
    glideEnd_ = services_.queue.postAfter(glideEndsAfter, [self = QPointer(this)] {
        if (self != nullptr && self->drag_ && self->drag_->dropping) {
            self->finishDrag();
        }
    });
}

void LauncherModel::abandonDrag() {
    cancelPending();
    glideEnd_.cancel();
    clearMergeTarget();
    if (!drag_->dropping) {
        save();
    }
    finishDrag();
}

void LauncherModel::finishDrag() {
    setDrag(std::nullopt);
    applyDeferredScan();
}

void LauncherModel::applyDeferredScan() {
    if (auto layout = std::exchange(deferredLayout_, std::nullopt)) {
        takeLateLayout(std::move(*layout));
    }
    if (const auto installed = std::exchange(deferredScan_, std::nullopt)) {
        applyScan(*installed);
    }
}

std::optional<QString> LauncherModel::groupCandidate(const DragInfo& drag, const QPointF& pointer) {
    if (!mergeTargetID_.isEmpty()) {
        return mergeTargetID_;
    }
    if (drag.fromFolder) {
        return std::nullopt;
    }
    const auto target = dropTarget(pageDrag(drag), pointer);
    return target ? std::optional(items_[*target].id()) : std::nullopt;
}

std::optional<QPointF> LauncherModel::landing(const DragInfo& drag) {
    if (drag.fromFolder) {
        const Folder* from = draggedFrom(*drag.fromFolder);
        const auto index =
            from != nullptr ? indexInFolder(*from, *drag.item.asApp()) : std::optional<std::size_t>();
        if (!index) {
            return std::nullopt;
        }
        const FolderMetrics panel = FolderMetrics::of(static_cast<int>(from->apps.size()), metrics());
        return iconCenter(panel, static_cast<int>(*index));
    }
    const GridMetrics grid = metrics();
    const auto slots = static_cast<std::size_t>(grid.slotsPerPage());
    const auto index = draggedIndex(drag.id);
    if (!index || *index / slots != static_cast<std::size_t>(page_)) {
        return std::nullopt;
    }
    return iconCenter(grid, static_cast<int>(*index % slots));
}

PageDrag LauncherModel::pageDrag(const DragInfo& drag) {
    return {.items = items_,
            .metrics = metrics(),
            .page = page_,
            .pageCount = displayedPageCount(),
            .dragsFolder = drag.item.isFolder(),
            .grabOffset = drag.grabOffset,
            .dragged = draggedIndex(drag.id),
            .target = mergeTargetID_.isEmpty() ? std::nullopt : placeOf(mergeTargetID_, targetPlace_)};
}

std::optional<std::size_t> LauncherModel::draggedIndex(const QString& id) {
    return placeOf(id, draggedPlace_);
}

std::optional<std::size_t> LauncherModel::placeOf(const QString& id, RememberedPlace& remembered) const {
    return remembered.in(
        layoutVersion_, [&](std::size_t place) { return place < items_.size() && items_[place].hasId(id); },
        [&] { return LayoutEdits::indexOf(items_, id); });
}

const Folder* LauncherModel::draggedFrom(const QUuid& folderID) {
    const auto isAt = [&](std::size_t place) {
        const Folder* there = place < items_.size() ? items_[place].asFolder() : nullptr;
        return there != nullptr && there->id == folderID;
    };
    const auto index = folderPlace_.in(layoutVersion_, isAt, [&] { return folderIndex(folderID); });
    return index ? items_[*index].asFolder() : nullptr;
}

std::optional<std::size_t> LauncherModel::indexInFolder(const Folder& folder, const QString& path) {
    const auto isAt = [&](std::size_t place) {
        const auto index = static_cast<qsizetype>(place);
        return index < folder.apps.size() && folder.apps[index] == path;
    };
    return appPlace_.in(layoutVersion_, isAt, [&] {
        const qsizetype index = folder.apps.indexOf(path);
        return index < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(index));
    });
}

void LauncherModel::setDrag(const std::optional<DragInfo>& drag) {
    if (drag != drag_) {
        drag_ = drag;
        Q_EMIT dragChanged();
    }
}

void LauncherModel::setMergeTarget(const QString& id) {
    withAnimation(motion::mergeTarget, [&] {
        mergeTargetID_ = id;
        targetPlace_.forget();
        Q_EMIT mergeTargetIDChanged();
    });
}

void LauncherModel::clearMergeTarget() {
    if (!mergeTargetID_.isEmpty()) {
        setMergeTarget({});
    }
}

} // namespace amberquill
