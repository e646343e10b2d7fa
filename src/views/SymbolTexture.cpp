#include "views/SymbolTexture.h"

#include "views/Symbols.h"

#include <algorithm>
#include <cmath>

namespace amberquill {

void SymbolTexture::setName(const QString& name) {
    if (name != name_) {
        name_ = name;
        Q_EMIT nameChanged();
        repaint();
    }
}

TextureItem::Painted SymbolTexture::paintTexture(double devicePixelRatio) {
    const int edge = std::max(1, static_cast<int>(std::lround(width() * devicePixelRatio)));
    return {paintSymbol(name_, edge), QRectF(QPointF(), QSizeF(edge, edge) / devicePixelRatio)};
}

} // namespace amberquill
