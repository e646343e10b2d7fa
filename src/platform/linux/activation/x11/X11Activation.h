#pragma once

#include "platform/ActivationTokens.h"
#include "platform/linux/applications/launching/StartupNotifications.h"

#include <QByteArray>
#include <array>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// Startup notification ids. An id contains the time of the click or key. The window manager activates a
// window with the id unless the user has used another window since that time. Needs the application object,
// on X11. Answers at once.
class X11ActivationTokens final : public ActivationTokens {
public:
    void request(QWindow& window, const QString& applicationPath, std::function<void(QString)> then) override;

private:
    int starts_ = 0;
};

// Broadcasts the starts of applications to window managers and task bars, by the Startup Notification
// Protocol. Main thread only.
class X11StartupNotifications final : public StartupNotifications {
public:
    // The connection outlives it. `screen` is the X screen's number.
    X11StartupNotifications(xcb_connection_t* connection, int screen);

    void begin(const StartupNotice& notice) override;
    void cancel(const QString& id) override;

private:
    void broadcast(const QByteArray& message);
    bool learnAtoms();

    xcb_connection_t* connection_;
    int screen_;
    std::array<xcb_atom_t, 2> atoms_{}; // the types of a message's first event and of its others
};

} // namespace amberquill::desktop
