#pragma once

#include "data/FolderMetrics.h"
#include "data/GridMetrics.h"
#include "data/LaunchItem.h"

#include <QPointF>
#include <QString>
#include <cstddef>
#include <optional>

// What a place of the pointer means during a drag: pure, and independent of how many items there are.
namespace amberquill {

// What happens once the icon has rested; the key tells one wish from another.
struct DragIntent {
    enum class Kind { FlipPage, MarkTarget, Move, MoveInFolder };

    Kind kind;
    std::size_t place; // the page, the target's or the new place in the layout, the new place in the folder
    QString key;
    double seconds; // of rest

    bool operator==(const DragIntent&) const = default;
};

// What a move of the pointer does.
struct DragStep {
    bool cancelsPending = false;
    bool clearsTarget = false;
    bool pullsOut = false; // the application leaves its folder
    std::optional<DragIntent> waits;

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
    std::optional<std::size_t> dragged; // where the dragged item stands
    std::optional<std::size_t> target;  // where the marked merge target stands
};

// Closer than this, in points, one icon's centre is upon another's.
double mergeRadius(const GridMetrics& metrics);
// A target once marked stays so within this.
double holdRadius(const GridMetrics& metrics);

// The centre of the icon in a slot of the page.
QPointF iconCenter(const GridMetrics& metrics, int slot);
// The centre of the icon at an index of a folder's panel.
QPointF iconCenter(const FolderMetrics& metrics, int index);

DragStep pageDragStep(const PageDrag& drag, const QPointF& pointer);

// `index` is where the dragged application stands among the folder's `count`; none when it is gone.
DragStep folderDragStep(const FolderMetrics& metrics, std::size_t count, std::optional<std::size_t> index,
                        const QPointF& pointer);

// Where the item stands that an application dropped here merges with, marked or not.
std::optional<std::size_t> dropTarget(const PageDrag& drag, const QPointF& pointer);

} // namespace amberquill
