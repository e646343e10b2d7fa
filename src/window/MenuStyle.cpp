#include "window/MenuStyle.h"

#include <QMenu>
#include <QPainter>
#include <QStyleOptionMenuItem>

namespace amberquill {

namespace {

// In points.
constexpr int flagWidth = 18;
constexpr int markRoom = 22;
constexpr int itemBorder = 1;

// The item if it has a picture and can be checked, else null.
const QStyleOptionMenuItem* withPictureAndMark(const QStyleOption* option) {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    return item != nullptr && !item->icon.isNull() && item->checkType != QStyleOptionMenuItem::NotCheckable
               ? item
               : nullptr;
}

} // namespace

MenuStyle::MenuStyle(QObject* parent) {
    setParent(parent);
}

void MenuStyle::applyTo(QMenu& menu) {
    auto* style = menu.findChild<MenuStyle*>(QString(), Qt::FindDirectChildrenOnly);
    if (style == nullptr) {
        style = new MenuStyle(&menu);
        menu.setStyle(style);
    }
    for (QMenu* submenu : menu.findChildren<QMenu*>()) {
        submenu->setStyle(style);
    }
}

int MenuStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    return metric == PM_SmallIconSize ? flagWidth : QProxyStyle::pixelMetric(metric, option, widget);
}

void MenuStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    const auto* item = element == CE_MenuItem ? withPictureAndMark(option) : nullptr;
    if (item == nullptr) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionMenuItem mark = *item;
    mark.icon = {};
    mark.text.clear();
    QProxyStyle::drawControl(element, &mark, painter, widget);
    // Everything else, after the mark.
    QStyleOptionMenuItem unmarked = *item;
    unmarked.checkType = QStyleOptionMenuItem::NotCheckable;
    const bool isMirrored = item->direction == Qt::RightToLeft;
    unmarked.rect.adjust(isMirrored ? 0 : markRoom, 0, isMirrored ? -markRoom : 0, 0);
    const int border = isMirrored ? -itemBorder : itemBorder;
    painter->save();
    painter->setClipRect(unmarked.rect.translated(border, 0));
    QProxyStyle::drawControl(element, &unmarked, painter, widget);
    painter->restore();
}

QSize MenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
    QSize needed = QProxyStyle::sizeFromContents(type, option, size, widget);
    if (type == CT_MenuItem && withPictureAndMark(option) != nullptr) {
        needed.rwidth() += markRoom;
    }
    return needed;
}

} // namespace amberquill
