#include "platform/linux/activation/x11/X11Activation.h"

#include "platform/linux/activation/Activation.h"

#include "platform/linux/activation/x11/StartupMessage.h"
#include "platform/linux/x11/XcbReply.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QSysInfo>
#include <QWindow>
#include <algorithm>
#include <qpa/qplatformnativeinterface.h>
#include <string_view>

namespace amberquill::desktop {

namespace {

// The time of the user's last input in one of our windows, else the server's latest time that Qt knows; 0:
// neither. Qt has no public API for them.
quint32 userTime(QScreen* screen) {
    QPlatformNativeInterface* const native = QGuiApplication::platformNativeInterface();
    for (const char* const resource : {"appusertime", "apptime"}) {
        const auto time = reinterpret_cast<quintptr>(native->nativeResourceForScreen(resource, screen));
        if (time != 0) {
            return static_cast<quint32>(time);
        }
    }
    return 0;
}

xcb_window_t rootWindow(xcb_connection_t* connection, int screen) {
    auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screen > 0 && roots.rem > 1; --screen) {
        xcb_screen_next(&roots);
    }
    return roots.data->root;
}

} // namespace

void X11ActivationTokens::request(QWindow& window, const QString& applicationPath,
                                  std::function<void(QString)> then) {
    const quint32 time = userTime(window.screen());
    if (time == 0) {
        qCDebug(activationLog) << "no startup id: the time of the user's action is not known";
        // No id: one with the time zero would ask the window manager not to activate the window.
        then({});
        return;
    }
    then(startupId({
        .host = QSysInfo::machineHostName(),
        .process = QCoreApplication::applicationPid(),
        .start = ++starts_,
        .application = applicationPath.section(u'/', -1),
        .time = time,
    }));
}

X11StartupNotifications::X11StartupNotifications(xcb_connection_t* connection, int screen)
    : connection_(connection)
    , screen_(screen) {}

void X11StartupNotifications::begin(const StartupNotice& notice) {
    broadcast(startupBeginning(notice, screen_));
}

void X11StartupNotifications::cancel(const QString& id) {
    broadcast(startupEnd(id));
}

bool X11StartupNotifications::learnAtoms() {
    constexpr std::array<std::string_view, 2> names = {"_NET_STARTUP_INFO_BEGIN", "_NET_STARTUP_INFO"};
    if (atoms_.back() != XCB_ATOM_NONE) {
        return true;
    }
    atoms_ = internAtoms(connection_, names);
    return atoms_.front() != XCB_ATOM_NONE && atoms_.back() != XCB_ATOM_NONE;
}

void X11StartupNotifications::broadcast(const QByteArray& message) {
    if (!learnAtoms()) {
        qCDebug(activationLog) << "no startup notification: the server gives no atoms";
        return;
    }
    const xcb_window_t root = rootWindow(connection_, screen_);
    // A window id for each message: receivers join the events that name the same window.
    const xcb_window_t sender = xcb_generate_id(connection_);
    const std::uint32_t unmanaged = 1;
    xcb_create_window(connection_, 0, sender, root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = sender;
    event.type = atoms_.front();
    for (const StartupChunk& chunk : startupChunks(message)) {
        std::copy(chunk.begin(), chunk.end(), std::begin(event.data.data8));
        xcb_send_event(connection_, 0, root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&event));
        event.type = atoms_.back();
    }
    xcb_destroy_window(connection_, sender);
    xcb_flush(connection_);
}

} // namespace amberquill::desktop
