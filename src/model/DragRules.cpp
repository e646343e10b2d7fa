#include "model/DragRules.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace amberquill {

namespace {

constexpr double edgeBand = 40;      // points at the left and right edge that turn the page
constexpr double pullOutMargin = 20; // points around a folder's panel that still count as the panel

constexpr double flipPageRest = 0.65; // seconds
constexpr double markTargetRest = 0.18;
constexpr double moveRest = 0.35;
constexpr double moveToEndRest = 0.3;
constexpr double moveInFolderRest = 0.12;

// A share of the icon's size, for sizes between 36 and 128 points. Constant below and above.
struct IconShare {
    double share;
    double ofSmallest;
    double ofLargest;
};

constexpr IconShare mergeShare{0.6, 21.6, 76.8};
constexpr IconShare holdShare{0.85, 30.6, 108.8};

double points(const IconShare& share, const GridMetrics& metrics) {
    const double size = metrics.rawIconSize();
    if (size <= 36) {
        return share.ofSmallest;
    }
    return size > 128 ? share.ofLargest : share.share * size;
}

double distance(const QPointF& a, const QPointF& b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

DragIntent intent(DragIntent::Kind kind, const char* prefix, std::size_t place, double seconds) {
    return {kind, place, QLatin1String(prefix) + QString::number(place), seconds};
}

// A marked target stays marked.
DragStep keepTarget() {
    DragStep step;
    step.cancelsPending = true;
    return step;
}

DragStep overNothing() {
    DragStep step = keepTarget();
    step.clearsTarget = true;
    return step;
}

DragStep startIntent(DragIntent intent) {
    DragStep step;
    step.clearsTarget = true;
    step.intent = std::move(intent);
    return step;
}

QPointF floatingCenter(const PageDrag& drag, const QPointF& pointer) {
    return pointer - drag.grabOffset;
}

// The slot whose icon would be under the floating one, and its index in the layout.
struct Probe {
    int slot;
    std::size_t index;
};

std::optional<Probe> probe(const PageDrag& drag, const QPointF& pointer) {
    const QPointF cellCenter = floatingCenter(drag, pointer) + QPointF(0, drag.metrics.iconRise());
    const auto slot = drag.metrics.slotAt(cellCenter);
    if (!slot) {
        return std::nullopt;
    }
    const auto slots = static_cast<std::size_t>(drag.metrics.slotsPerPage());
    return Probe{*slot, static_cast<std::size_t>(drag.page) * slots + static_cast<std::size_t>(*slot)};
}

bool isWithin(const PageDrag& drag, const QPointF& pointer, int slot, double radius) {
    return distance(floatingCenter(drag, pointer), iconCenter(drag.metrics, slot)) < radius;
}

bool holdsTarget(const PageDrag& drag, const QPointF& pointer) {
    if (!drag.target) {
        return false;
    }
    const auto slots = static_cast<std::size_t>(drag.metrics.slotsPerPage());
    return *drag.target / slots == static_cast<std::size_t>(drag.page) &&
           isWithin(drag, pointer, static_cast<int>(*drag.target % slots), holdRadius(drag.metrics));
}

DragStep atEdge(const PageDrag& drag, int direction) {
    const int page = drag.page + direction;
    if (page < 0 || page >= drag.pageCount) {
        return overNothing();
    }
    return startIntent(
        intent(DragIntent::Kind::FlipPage, "page:", static_cast<std::size_t>(page), flipPageRest));
}

DragStep overEnd(const PageDrag& drag) {
    const std::size_t last = drag.items.size() - 1;
    if (drag.dragged == last) {
        return overNothing();
    }
    return startIntent(intent(DragIntent::Kind::Move, "move:", last, moveToEndRest));
}

} // namespace

double mergeRadius(const GridMetrics& metrics) {
    return points(mergeShare, metrics);
}

double holdRadius(const GridMetrics& metrics) {
    return points(holdShare, metrics);
}

QPointF iconCenter(const GridMetrics& metrics, int slot) {
    return metrics.cellCenter(slot) - QPointF(0, metrics.iconRise());
}

QPointF iconCenter(const FolderMetrics& metrics, int index) {
    return metrics.cellCenter(index) - QPointF(0, metrics.scale * metrics.grid.iconRise());
}

DragStep pageDragStep(const PageDrag& drag, const QPointF& pointer) {
    if (pointer.x() < edgeBand) {
        return atEdge(drag, -1);
    }
    if (pointer.x() > drag.metrics.size.width() - edgeBand) {
        return atEdge(drag, 1);
    }
    if (!drag.dragged) {
        return {};
    }
    if (holdsTarget(drag, pointer)) {
        return keepTarget();
    }
    const auto over = probe(drag, pointer);
    if (!over) {
        return overNothing();
    }
    if (over->index >= drag.items.size()) {
        return overEnd(drag);
    }
    if (over->index == *drag.dragged) {
        return overNothing();
    }
    if (drag.dragsFolder || !isWithin(drag, pointer, over->slot, mergeRadius(drag.metrics))) {
        return startIntent(intent(DragIntent::Kind::Move, "move:", over->index, moveRest));
    }
    return startIntent({DragIntent::Kind::MarkTarget, over->index,
                        QLatin1String("merge:") + drag.items[over->index].id(), markTargetRest});
}

DragStep folderDragStep(const FolderMetrics& metrics, std::size_t count, std::optional<std::size_t> index,
                        const QPointF& pointer) {
    const QRectF panel =
        metrics.panelRect.adjusted(-pullOutMargin, -pullOutMargin, pullOutMargin, pullOutMargin);
    if (!holds(panel, pointer)) {
        DragStep step = keepTarget();
        step.pullsOut = true;
        return step;
    }
    const auto slot = metrics.slotAt(pointer);
    if (!slot || !index || count == 0) {
        return {};
    }
    const std::size_t place = std::min(static_cast<std::size_t>(*slot), count - 1);
    if (place == *index) {
        return keepTarget();
    }
    DragStep step;
    step.intent = intent(DragIntent::Kind::MoveInFolder, "folder:", place, moveInFolderRest);
    return step;
}

std::optional<QString> groupCandidate(const PageDrag& drag, const QPointF& pointer) {
    if (drag.dragsFolder) {
        return std::nullopt;
    }
    if (!drag.markedTarget.isEmpty()) {
        return drag.markedTarget;
    }
    // A quick drop merges before the target has been marked.
    const auto over = probe(drag, pointer);
    if (!over || over->index >= drag.items.size() || over->index == drag.dragged ||
        !isWithin(drag, pointer, over->slot, mergeRadius(drag.metrics))) {
        return std::nullopt;
    }
    return drag.items[over->index].id();
}

} // namespace amberquill
