#include "platform/linux/capture/ScreenCaptures.h"

#include "platform/linux/capture/wayland/WlrScreenCapture.h"
#include "platform/linux/capture/x11/X11ScreenCapture.h"

#include <QGuiApplication>

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

std::unique_ptr<ScreenCapture> makeScreenCapture() {
    const bool isGuest = qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland"_s ||
                         !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!isGuest && qGuiApp->nativeInterface<QNativeInterface::QX11Application>() != nullptr) {
        return std::make_unique<X11ScreenCapture>();
    }
    if (QGuiApplication::platformName().startsWith(u"wayland"_s)) {
        return std::make_unique<WlrScreenCapture>();
    }
    return std::make_unique<NullScreenCapture>();
}

} // namespace amberquill::desktop
