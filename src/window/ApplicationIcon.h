#pragma once

#include <QIcon>
#include <QImage>
#include <QPixmap>

namespace amberquill {

// The program's own icon: a square with this edge in device pixels.
[[nodiscard]] QImage applicationPicture(int edge);

// The same with an edge in points.
[[nodiscard]] QPixmap applicationPixmap(int edge, double devicePixelRatio);

// The same in the sizes that task bars and window switchers show, painted here.
[[nodiscard]] QIcon applicationIcon();

} // namespace amberquill
