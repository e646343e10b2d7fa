#pragma once

#include "platform/linux/environment/DataFolders.h"

#include <QString>
#include <QStringView>

namespace amberquill::desktop {

inline constexpr QStringView desktopFileEnding(u".desktop");

// The id of the desktop file at `path`, without its ending, by which window systems and service managers know
// the application: of the path alone. One that is in no application folder has its name for an id. Empty: not
// a desktop file.
[[nodiscard]] QString applicationIdFor(const QString& path, const DataFolders& folders);

} // namespace amberquill::desktop
