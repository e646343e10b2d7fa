#include "views/DesktopPicture.h"

namespace amberquill {

void DesktopPicture::setImage(const QImage& image) {
    image_ = image;
    repaint();
}

void DesktopPicture::forget() {
    image_ = {};
    forgetPainted();
}

TextureItem::Painted DesktopPicture::paintTexture(double /*devicePixelRatio*/) {
    return {image_, QRectF({}, size())};
}

} // namespace amberquill
