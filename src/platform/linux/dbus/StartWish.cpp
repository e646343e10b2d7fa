#include "platform/linux/dbus/StartWish.h"

namespace amberquill::desktop {

StartWish startWish(const Environment& environment) {
    const auto text = [&environment](const char* name) {
        return QString::fromUtf8(environment(name).value_or(QByteArray()));
    };
    return {{ApplicationRequest::Kind::Show, text("XDG_ACTIVATION_TOKEN"), text("DESKTOP_STARTUP_ID")},
            environment("DBUS_STARTER_BUS_TYPE").has_value()};
}

} // namespace amberquill::desktop
