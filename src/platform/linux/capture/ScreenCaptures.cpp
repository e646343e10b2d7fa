#include "platform/linux/capture/ScreenCaptures.h"

#include "platform/linux/capture/wayland/WlrScreenCapture.h"
#include "platform/linux/capture/x11/X11ScreenCapture.h"

#include <QGuiApplication>

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(captureLog, "amberquill.capture", QtCriticalMsg)

using namespace Qt::StringLiterals;

std::unique_ptr<ScreenCapture> makeScreenCapture() {
    const bool isGuest = qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland"_s ||
                         !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!isGuest && qGuiApp->nativeInterface<QNativeInterface::QX11Application>() != nullptr) {
        qCDebug(captureLog) << "reads the X server's root window";
        return std::make_unique<X11ScreenCapture>();
    }
    if (QGuiApplication::platformName().startsWith(u"wayland"_s)) {
        qCDebug(captureLog) << "asks the compositor for copies";
        return std::make_unique<WlrScreenCapture>();
    }
    qCDebug(captureLog) << "no screen can be read here";
    return std::make_unique<NullScreenCapture>();
}

} // namespace amberquill::desktop
