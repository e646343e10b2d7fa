#pragma once

#include "data/FolderMetrics.h"
#include "data/GridMetrics.h"
#include "data/LaunchItem.h"

#include <QPointF>
#include <QString>
#include <cstddef>
#include <optional>

// What a position of the pointer means during a drag: pure functions whose time does not depend on the number
// of items.
namespace amberquill {

// The action once the pointer has rested. The key tells one intent from another.
struct DragIntent {
    enum class Kind { FlipPage, MarkTarget, Move, MoveInFolder };

    Kind kind;
    std::size_t place; // the page; the index of the target; the new index in the layout or in the folder
    QString key;
    double seconds; // of rest

    bool operator==(const DragIntent&) const = default;
};

// What a move of the pointer does.
struct DragStep {
    bool cancelsPending = false;
    bool clearsTarget = false;
    bool pullsOut = false; // the application leaves its folder
    std::optional<DragIntent> intent;

    bool operator==(const DragStep&) const = default;
};

// A drag on the page at one moment.
struct PageDrag {
    const LaunchItems& items;
    GridMetrics metrics;
    int page = 0;
    int pageCount = 1;
    bool dragsFolder = false;
    QPointF grabOffset;
    std::optional<std::size_t> dragged; // the dragged item's index
    QString markedTarget;               // identity; empty: no target is marked
    std::optional<std::size_t> target;  // the marked target's index
};

// A target can be marked, or dropped on, while the icons' centres are closer than this. In points.
double mergeRadius(const GridMetrics& metrics);
// A marked target stays marked within this distance.
double holdRadius(const GridMetrics& metrics);

// The centre of the icon in a slot of the page.
QPointF iconCenter(const GridMetrics& metrics, int slot);
// The centre of the icon at an index of a folder's panel.
QPointF iconCenter(const FolderMetrics& metrics, int index);

DragStep pageDragStep(const PageDrag& drag, const QPointF& pointer);

// `index` is the dragged application's in the folder, none when it is gone; `count` is the folder's size.
DragStep folderDragStep(const FolderMetrics& metrics, std::size_t count, std::optional<std::size_t> index,
                        const QPointF& pointer);

// When a drop makes a folder: the identity of the item that an icon dropped at `pointer` is merged with. Two
// applications become a folder; an application dropped on a folder joins it.
std::optional<QString> groupCandidate(const PageDrag& drag, const QPointF& pointer);

} // namespace amberquill
