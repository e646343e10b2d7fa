#pragma once

#include "views/TextureItem.h"

namespace amberquill {

// The desktop as it is without the launcher, filling the item: what lies lowest in a window that nothing
// shows through, while the launcher comes and goes.
class DesktopPicture final : public TextureItem {
    Q_OBJECT

public:
    using TextureItem::TextureItem;

    // Null: there is none.
    void setImage(const QImage& image);

    // Lets go of it, in a window that is off the screen.
    void forget();

protected:
    Painted paintTexture(double devicePixelRatio) override;

private:
    QImage image_;
};

} // namespace amberquill
