#pragma once

#include <QImage>
#include <QString>

namespace amberquill {

// One of the interface's own symbols, such as "plus", in white on a transparent square with this edge (device
// pixels). Upright and level lines are whole pixels thick and lie on the pixels; circles touch them. An
// unknown name is an empty square. Pure.
[[nodiscard]] QImage paintSymbol(const QString& name, int edge);

} // namespace amberquill
