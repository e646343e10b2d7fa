#include "model/LauncherController.h"
#include "model/LauncherModel.h"
#include "model/ModelLog.h"
#include "motion/Animations.h"

#include <algorithm>
#include <utility>

namespace amberquill {

namespace {

constexpr double glideEndsAfter = 0.19; // seconds; a little longer than the glide

template<typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template<typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>; // clang 14 needs it

} // namespace

Hit LauncherModel::hitTest(const QPointF& point) const {
    const Folder* open = openFolderID_ ? folder(*openFolderID_) : nullptr;
    return amberquill::hitTest(point, {displayedItems(), metrics(), page_, scrollOffset_}, open);
}

void LauncherModel::pointerChanged(const PointerGesture& gesture) {
    apply(dragSession_.pointerChanged(gesture, dragScene()));
    apply(dragSession_.dragMoved(gesture.location, dragScene()));
}

void LauncherModel::pointerEnded(const PointerGesture& gesture) {
    apply(dragSession_.pointerReleased(gesture, dragScene()));
}

void LauncherModel::pointerCancelled() {
    cancelGesture("the loss of the pointer");
}

void LauncherModel::cancelGesture(const char* cause) {
    if (drag_) {
        qCDebug(modelLog) << "drag of" << drag_->id << "cancelled by" << cause;
    }
    apply(dragSession_.pointerCancelled());
}

void LauncherModel::cancelPending() {
    apply(dragSession_.cancelPending());
}

DragScene LauncherModel::dragScene() const {
    return {.items = items_,
            .displayedItems = displayedItems(),
            .metrics = metrics(),
            .page = page_,
            .scrollOffset = scrollOffset_,
            .isSearching = isSearching(),
            .openFolderID = openFolderID_};
}

void LauncherModel::apply(const DragSession::Actions& actions) {
    using Session = DragSession;
    const Overloaded applyOne{
        [this](const Session::SetPressed& pressed) { setPressedID(pressed.id); },
        [this](const Session::SetDrag& set) { setDrag(set.drag); },
        [this](const Session::SetMergeTarget& target) { setMergeTarget(target.id); },
        [this](const Session::SetPointer& pointer) { tracker_.setLocation(pointer.location); },
        [this](const Session::StopScrolling&) { setScrollOffset(0); },
        [this](const Session::StartTimer& timer) {
            dragTimer_ =
                services_.queue.postAfter(timer.seconds, [this] { apply(dragSession_.timerFired()); });
        },
        [this](const Session::StopTimer&) { dragTimer_.cancel(); },
        [this](const Session::FlipPage& flip) { turnToPage(flip.page); },
        [this](const Session::Move& moved) { move(moved.id, moved.to); },
        [this](const Session::MoveInFolder& moved) { moveInFolder(moved.folderID, moved.path, moved.to); },
        [this](const Session::PullOut& pulled) { pullOut(pulled.path, pulled.folderID); },
        [this](const Session::Merge& merged) { merge(merged.draggedID, merged.targetID); },
        [this](const Session::Glide& glide) {
            withAnimation(motion::dropGlide, [&] {
                setDrag(glide.drag);
                tracker_.setLocation(glide.location);
            });
            glideEnd_ =
                services_.queue.postAfter(glideEndsAfter, [this] { apply(dragSession_.glideEnded()); });
        },
        [this](const Session::StopGlide&) { glideEnd_.cancel(); },
        [this](const Session::Tap& tap) { handleTap(tap.hit); },
        [this](const Session::Save&) { save(); },
        [this](const Session::ApplyDeferred&) { applyDeferred(); },
    };
    for (const DragSession::Action& action : actions) {
        std::visit(applyOne, action);
    }
}

void LauncherModel::applyDeferred() {
    if (auto layout = std::exchange(deferredLayout_, std::nullopt)) {
        takeLateLayout(std::move(*layout));
    }
    if (const auto installed = std::exchange(deferredScan_, std::nullopt)) {
        applyScan(*installed);
    }
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
        Q_EMIT mergeTargetIDChanged();
    });
}

void LauncherModel::setPressedID(const QString& id) {
    if (id != pressedID_) {
        pressedID_ = id;
        Q_EMIT pressedIDChanged();
    }
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
