#include "window/MenuStyle.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionMenuItem>

namespace amberquill {

namespace {

// In points.
constexpr int flagWidth = 18;
constexpr int markRoom = 28;
constexpr double markSize = 10;
constexpr double markLine = 1.8;

// The item when it has a picture and can be checked.
const QStyleOptionMenuItem* withPictureAndMark(const QStyleOption* option) {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    return item != nullptr && !item->icon.isNull() && item->checkType != QStyleOptionMenuItem::NotCheckable
               ? item
               : nullptr;
}

void drawMark(QPainter& painter, const QRectF& rect, const QColor& colour) {
    const QPointF middle(rect.right() - markRoom / 2.0, rect.center().y());
    QPainterPath mark(middle + QPointF(-markSize / 2, 0));
    mark.lineTo(middle + QPointF(-markSize / 8, markSize * 0.35));
    mark.lineTo(middle + QPointF(markSize / 2, -markSize * 0.4));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, markLine, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(mark);
    painter.restore();
}

} // namespace

MenuStyle::MenuStyle(QObject* parent) {
    setParent(parent);
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
    QStyleOptionMenuItem unmarked = *item;
    unmarked.checkType = QStyleOptionMenuItem::NotCheckable;
    QProxyStyle::drawControl(element, &unmarked, painter, widget);
    if (item->checked) {
        const bool isSelected = item->state.testFlag(State_Selected);
        drawMark(*painter, item->rect,
                 item->palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
    }
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
