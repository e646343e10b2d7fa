#include "platform/linux/activation/x11/X11ActivationTokens.h"

#include "platform/linux/activation/x11/StartupMessage.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QSysInfo>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

namespace amberquill::desktop {

namespace {

// When the user last did something to one of our windows, else the last time the server told us of; 0: none
// yet. There is no public way to learn either.
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

} // namespace

void X11ActivationTokens::request(QWindow& window, const QString& applicationPath,
                                  std::function<void(QString)> then) {
    const quint32 time = userTime(window.screen());
    if (time == 0) {
        // An id that ends in zero asks not to come to the front.
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

} // namespace amberquill::desktop
