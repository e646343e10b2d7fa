#pragma once

#include <QIcon>
#include <QImage>
#include <QPixmap>

namespace amberquill {

// The program's own icon, as a square with edges of that many device pixels.
[[nodiscard]] QImage applicationPicture(int edge);

// The same with edges of that many points, on a screen with that many device pixels to a point.
[[nodiscard]] QPixmap applicationPixmap(int edge, double devicePixelRatio);

// The same in the sizes that task bars and switchers show. They are painted at once.
[[nodiscard]] QIcon applicationIcon();

} // namespace amberquill
