// platform/linux/activation/: how a program gets the right to come to the front. Window managers and
// compositors give the focus to a new window only if a token shows that the user asked for it. The launcher
// uses the token it was started with, and asks for one for each application it starts.
//
// Parts:
// - takeStartToken: the token in our own environment, good for one showing.
// - x11/: startup notification ids, and the messages that announce a start. StartupMessage (pure) composes
//   them, X11Activation sends them.
// - wayland/: XdgActivation asks the compositor, on Qt's connection.
//
// Rules: nothing here waits. X11 answers at once; a compositor has 0.3 seconds, after which an application is
// started without a token. Main thread only. Log: amberquill.activation.
#pragma once

#include "platform/ActivationTokens.h"
#include "platform/linux/applications/launching/InheritedState.h"
#include "platform/linux/applications/launching/StartupNotifications.h"

#include <QLoggingCategory>
#include <QString>
#include <QStringView>
#include <memory>

namespace amberquill {
class MainQueue;
}

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(activationLog)

// For the window system that the application object runs on; an object that does nothing if that one has no
// such protocol. Never null. Destroy the result before the application object.
[[nodiscard]] std::unique_ptr<ActivationTokens> makeActivationTokens(MainQueue& queue);
[[nodiscard]] std::unique_ptr<StartupNotifications> makeStartupNotifications();

// The token or startup id that the launcher itself was started with; empty: none. `platform` is the
// application object's platform name, or empty before that object exists. If the environment has both kinds,
// the platform's own kind is preferred.
//
// A token is valid once, so this removes it from our environment. Call this after constructing the
// application object, unless this process only hands the token over: on X11 the application object reads the
// id, and Qt completes the startup notification when the first window is shown.
[[nodiscard]] QString takeStartToken(const InheritedEnvironment& start, QStringView platform);

} // namespace amberquill::desktop
