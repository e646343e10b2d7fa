#include "platform/linux/activation/StartToken.h"

#include <QtGlobal>

namespace amberquill::desktop {

QString takeStartToken(const InheritedEnvironment& start, QStringView platform) {
    constexpr auto activationToken = "XDG_ACTIVATION_TOKEN";
    constexpr auto startupId = "DESKTOP_STARTUP_ID";
    qunsetenv(activationToken);
    qunsetenv(startupId);
    const bool x11 = platform == u"xcb";
    const QByteArray first = start.value(x11 ? startupId : activationToken).value_or(QByteArray());
    const QByteArray second = start.value(x11 ? activationToken : startupId).value_or(QByteArray());
    return QString::fromUtf8(first.isEmpty() ? second : first);
}

} // namespace amberquill::desktop
