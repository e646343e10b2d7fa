#include "views/ContentItem.h"

#include "views/TileLayout.h"

#include <QQuickWindow>

namespace amberquill {

double ContentItem::devicePixelRatio() const {
    return window() != nullptr ? window()->effectiveDevicePixelRatio() : 1;
}

double ContentItem::snapped(double value) const {
    return amberquill::snapped(value, devicePixelRatio());
}

void ContentItem::itemChange(ItemChange change, const ItemChangeData& value) {
    if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && value.window != nullptr)) {
        Q_EMIT devicePixelRatioChanged();
    }
    QQuickItem::itemChange(change, value);
}

} // namespace amberquill
