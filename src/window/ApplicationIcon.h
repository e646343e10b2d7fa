#pragma once

#include <QIcon>
#include <QImage>

namespace amberquill {

// The program's own icon, as a square with edges of that many device pixels.
[[nodiscard]] QImage applicationPicture(int edge);

// The same in the sizes that task bars and switchers show. They are painted at once.
[[nodiscard]] QIcon applicationIcon();

} // namespace amberquill
