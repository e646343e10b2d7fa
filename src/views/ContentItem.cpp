#include "views/ContentItem.h"

#include <QQuickWindow>

namespace amberquill {

ContentItem::ContentItem(QQuickItem* parent)
    : QQuickItem(parent) {
    // It draws nothing, but Qt tells only items with contents about another device pixel ratio.
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
