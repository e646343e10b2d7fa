#pragma once

#include "platform/linux/applications/launching/InheritedState.h"

#include <QString>
#include <QStringView>

namespace amberquill::desktop {

// The token or startup id that the launcher itself was started with; empty: none. `platform` is the
// application object's, or empty before there is one; each window system is given its own kind first.
//
// It is good for one showing, so it is removed from our environment. Call it after the application object is
// made, unless this process only hands the token over: on X11 Qt takes the id at that moment, and completes
// the startup notification when the first window is shown.
[[nodiscard]] QString takeStartToken(const InheritedEnvironment& start, QStringView platform);

} // namespace amberquill::desktop
