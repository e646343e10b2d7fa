#pragma once

#include "data/GridMetrics.h"
#include "data/LaunchItem.h"
#include "model/DragRules.h"
#include "model/HitTest.h"

#include <QPointF>
#include <QString>
#include <QUuid>
#include <QVarLengthArray>
#include <cmath>
#include <cstddef>
#include <optional>
#include <variant>

namespace amberquill {

// One moment of a press, move and release; points in the launcher's content.
struct PointerGesture {
    QPointF startLocation;
    QPointF location;

    // The pointer's distance from where it was pressed.
    [[nodiscard]] double travel() const {
        const QPointF translation = location - startLocation;
        return std::hypot(translation.x(), translation.y());
    }
};

// The item that is being dragged.
struct DragInfo {
    QString id; // the item's identity
    LaunchItem item;
    std::optional<QUuid> fromFolder; // the folder whose panel it is dragged in; none on the page
    QPointF grabOffset;              // of the pointer from the dragged icon's centre, in points
    bool dropping = false;           // released, gliding to its place

    bool operator==(const DragInfo&) const = default;
};

// What the session reads of the launcher at an event.
struct DragScene {
    const LaunchItems& items;          // the layout
    const LaunchItems& displayedItems; // the layout, or what a search has found
    GridMetrics metrics;
    int page = 0;
    double scrollOffset = 0;
    bool isSearching = false;
    std::optional<QUuid> openFolderID;
};

// The pointer's gesture as a state machine: a press becomes a tap or a drag; a drag moves items, marks a
// merge target, flips pages, leaves a folder and ends with a drop. Events come in as calls, actions go out as
// values that the caller applies in their order. What a position of the pointer means stands in DragRules.
//
// At most one intent is pending. It is carried out when its timer fires: the pointer has rested. The same
// intent again keeps the timer running, another one replaces it.
class DragSession {
public:
    // A gesture that travels no further than this is a tap, in points.
    static constexpr double tapTravel = 6;

    // --- Actions

    struct SetPressed {
        QString id; // empty: no tile is pressed
    };
    struct SetDrag {
        std::optional<DragInfo> drag;
    };
    struct SetMergeTarget {
        QString id; // empty: none is marked
    };
    struct SetPointer { // the tracker's location
        QPointF location;
    };
    struct StopScrolling {}; // the pages' offset becomes 0
    struct StartTimer {      // `timerFired` after so many seconds; replaces a timer that runs
        double seconds;
    };
    struct StopTimer {};
    struct FlipPage {
        int page;
    };
    struct Move {
        QString id;
        std::size_t to;
    };
    struct MoveInFolder {
        QUuid folderID;
        QString path;
        std::size_t to;
    };
    struct PullOut { // answered with `pulledOut`
        QString path;
        QUuid folderID;
    };
    struct Merge {
        QString draggedID;
        QString targetID;
    };
    struct Glide { // to the place of the drop; `glideEnded` when the icon is there
        DragInfo drag;
        QPointF location; // of the pointer
    };
    struct StopGlide {};
    struct Tap {
        Hit hit;
    };
    struct Save {};
    struct ApplyDeferred {}; // what came in during the drag

    using Action = std::variant<SetPressed, SetDrag, SetMergeTarget, SetPointer, StopScrolling, StartTimer,
                                StopTimer, FlipPage, Move, MoveInFolder, PullOut, Merge, Glide, StopGlide,
                                Tap, Save, ApplyDeferred>;
    using Actions = QVarLengthArray<Action, 4>; // no allocation for a move of the pointer

    // --- Events

    // A change of the gesture: the first one is its press. Then `dragMoved` with the scene as it is after the
    // actions: the drag that begins here may have changed it.
    [[nodiscard]] Actions pointerChanged(const PointerGesture& gesture, const DragScene& scene);
    [[nodiscard]] Actions dragMoved(const QPointF& pointer, const DragScene& scene);
    [[nodiscard]] Actions pointerReleased(const PointerGesture& gesture, const DragScene& scene);
    // The gesture was taken away. It is no tap, a drag ends where it is, and the rest of the gesture is
    // ignored.
    [[nodiscard]] Actions pointerCancelled();
    [[nodiscard]] Actions timerFired();
    [[nodiscard]] Actions glideEnded();
    // The dragged application has left its folder and stands at this index of the layout.
    [[nodiscard]] Actions pulledOut(std::size_t index);
    [[nodiscard]] Actions cancelPending();

    // The key of the pending intent; empty: none is pending.
    [[nodiscard]] QString pendingKey() const { return pending_ ? pending_->key : QString(); }

private:
    struct Press {
        QPointF location;
        Hit hit;
    };
    struct Pending {
        QString key;
        Action action;
    };

    void press(const QPointF& location, const DragScene& scene, Actions& actions);
    void beginDrag(const QPointF& pointer, const DragScene& scene, Actions& actions);
    [[nodiscard]] std::optional<DragInfo> dragOfTile(const QString& id, const DragScene& scene);
    [[nodiscard]] std::optional<DragInfo> dragInFolder(const QString& path, const DragScene& scene);
    void updateDrag(const DragScene& scene, Actions& actions);
    void updateInFolder(const DragScene& scene, Actions& actions);
    void apply(const DragStep& step, const DragScene& scene, Actions& actions);
    void schedule(const DragIntent& intent, const DragScene& scene, Actions& actions);
    void endDrag(const DragScene& scene, Actions& actions);
    void finish(Actions& actions);
    void cancelPending(Actions& actions);
    void clearMergeTarget(Actions& actions);

    [[nodiscard]] PageDrag pageDrag(const DragScene& scene);
    [[nodiscard]] std::optional<QPointF> landing(const DragScene& scene);
    [[nodiscard]] const Folder* folder(const QUuid& id, const DragScene& scene);
    [[nodiscard]] std::optional<std::size_t> indexInFolder(const Folder& folder, const QString& path);

    std::optional<Press> press_;
    bool isCancelled_ = false; // the gesture, whose moves may still come
    std::optional<DragInfo> drag_;
    QPointF pointer_; // during a drag
    QString mergeTargetID_;
    std::optional<Pending> pending_;

    // The last known indexes: searches begin there.
    std::size_t draggedIndex_ = 0;
    std::size_t targetIndex_ = 0;
    std::size_t folderIndex_ = 0;
    std::size_t appIndex_ = 0; // in the folder
};

} // namespace amberquill
