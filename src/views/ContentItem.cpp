#include "views/ContentItem.h"

#include <QQuickWindow>

namespace amberquill {

ContentItem::ContentItem(QQuickItem* parent)
    : QQuickItem(parent) {
    // Draws nothing itself; but Qt tells only those that do of another resolution.
    setFlag(ItemHasContents);
}

double ContentItem::devicePixelRatio() const {
    return window() != nullptr ? window()->effectiveDevicePixelRatio() : 1;
}

void ContentItem::itemChange(ItemChange change, const ItemChangeData& value) {
    if (change == ItemDevicePixelRatioHasChanged || (change == ItemSceneChange && value.window != nullptr)) {
        Q_EMIT devicePixelRatioChanged();
    }
    QQuickItem::itemChange(change, value);
}

} // namespace amberquill
