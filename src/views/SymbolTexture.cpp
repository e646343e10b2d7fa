#include "views/SymbolTexture.h"

#include <QPainter>
#include <QSvgRenderer>

namespace amberquill {

void SymbolTexture::setName(const QString& name) {
    if (name != name_) {
        name_ = name;
        Q_EMIT nameChanged();
        repaint();
    }
}

TextureItem::Painted SymbolTexture::paintTexture(double devicePixelRatio) {
    const QSize pixels = (size() * devicePixelRatio).toSize().expandedTo({1, 1});
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer symbol(QStringLiteral(":/qt/qml/Amberquill/Views/symbols/%1.svg").arg(name_));
    QPainter painter(&image);
    symbol.render(&painter);
    painter.end();
    return {image, QRectF(QPointF(), QSizeF(pixels) / devicePixelRatio)};
}

} // namespace amberquill
