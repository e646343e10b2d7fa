#include "views/DesktopPicture.h"

namespace amberquill {

void DesktopPicture::setImage(const QImage& image) {
    image_ = image;
    repaint();
}

TextureItem::Painted DesktopPicture::paintTexture(double /*devicePixelRatio*/) {
    return {image_, QRectF({}, size())};
}

} // namespace amberquill
