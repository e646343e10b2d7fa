#pragma once

#include <QByteArray>
#include <QString>

namespace amberquill::desktop {

// The folder in which a bus of that address has its socket; empty: it has none in a folder.
[[nodiscard]] QString busSocketFolder(const QByteArray& address);

} // namespace amberquill::desktop
