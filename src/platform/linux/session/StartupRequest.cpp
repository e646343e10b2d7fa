#include "platform/linux/session/StartupRequest.h"

namespace amberquill::desktop {

StartupRequest startupRequest(const Environment& environment, const QList<QByteArray>& arguments) {
    const auto text = [&environment](const char* name) {
        return QString::fromUtf8(environment(name).value_or(QByteArray()));
    };
    auto kind = ApplicationRequest::Kind::Show;
    for (const QByteArray& argument : arguments) {
        if (argument.startsWith("--")) {
            kind = actionKind(argument.constData() + 2).value_or(kind);
        }
    }
    return {{kind, text("XDG_ACTIVATION_TOKEN"), text("DESKTOP_STARTUP_ID")},
            environment("DBUS_STARTER_BUS_TYPE").has_value()};
}

} // namespace amberquill::desktop
