#pragma once

#include "platform/linux/environment/Environment.h"

#include <QString>

namespace amberquill::desktop {

// The name of the icon theme that the user chose. Read from the running desktop's settings: KDE's kdeglobals,
// the dconf database of GNOME and its relatives, Xfce's or LXQt's files. If they have none, in this order:
// Qt's platform theme (`platformTheme`, unless empty or "hicolor"), GTK's settings.ini, the desktop's
// default, "hicolor". Reads a few small files.
[[nodiscard]] QString chosenIconTheme(const Environment& environment, const QString& platformTheme);

// The same for this process. Main thread only, after the application object; under a millisecond.
[[nodiscard]] QString iconThemeName();

} // namespace amberquill::desktop
