#pragma once

#include "platform/linux/environment/Environment.h"

#include <QString>

namespace amberquill::desktop {

// The name of the icon theme that the user chose, asked where the running desktop keeps it: KDE's kdeglobals;
// the dconf database of GNOME and its relatives; Xfce's and LXQt's settings; else what Qt's platform theme
// says (`platformTheme`; empty or "hicolor": nothing), else GTK's settings.ini, else the desktop's default.
// "hicolor" where nothing says anything. Reads a few small files.
[[nodiscard]] QString chosenIconTheme(const Environment& environment, const QString& platformTheme);

// The same for this process. Main thread only, after the application object; under a millisecond.
[[nodiscard]] QString iconThemeName();

} // namespace amberquill::desktop
