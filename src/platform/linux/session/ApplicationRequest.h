#pragma once

#include "platform/linux/dbus/BusConnection.h"
#include "platform/linux/environment/Environment.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringView>
#include <optional>
#include <string_view>
#include <variant>

namespace amberquill::desktop {

// The program's well-known name and the path of its object.
inline constexpr auto applicationBusName = "org.amberquill.Amberquill";
inline constexpr auto applicationBusPath = "/org/amberquill/Amberquill";

// What others ask of the running program by the interface org.freedesktop.Application (Desktop Entry
// Specification, "D-Bus Activation"), with what lets it come to the front.
struct ApplicationRequest {
    enum class Kind {
        Show,
        Hide,
        Toggle,
    };

    Kind kind = Kind::Show;
    QString activationToken; // of Wayland
    QString startupId;       // of X11

    bool operator==(const ApplicationRequest&) const = default;
};

// Of the two that came along, the one for the window system of that name (QGuiApplication::platformName).
[[nodiscard]] QString tokenFor(const ApplicationRequest& request, QStringView platform);

// Why a call is not carried out: the name of a D-Bus error.
struct RequestRefusal {
    const char* error;
};

// A method call of the interface: Activate and Open show, ActivateAction does what the action's name says
// ("show", "hide", "toggle"). Parameters and files are taken for nothing. None: a method the interface has
// not.
using ReadRequest = std::variant<std::monostate, ApplicationRequest, RequestRefusal>;
[[nodiscard]] ReadRequest readRequest(DBusMessage& call);

// What an action of that name asks for: "show", "hide" or "toggle".
[[nodiscard]] std::optional<ApplicationRequest::Kind> actionKind(std::string_view action);

// The call with which a request is handed on to the running program. It starts none.
[[nodiscard]] BusMessage makeRequestCall(const ApplicationRequest& request);

// What the object says of itself (org.freedesktop.DBus.Introspectable).
[[nodiscard]] const char* introspection();

// What a start of the program stands for: the request, which the running program gets, if there is one, and
// whether it was the bus that started us, on behalf of calls that it holds back until we have the name.
struct StartupRequest {
    ApplicationRequest request;
    bool byTheBus = false;

    bool operator==(const StartupRequest&) const = default;
};

// As the environment and the arguments tell that the program was started with: `--show`, which is what none
// of them stands for, `--hide` or `--toggle`; the last one counts, and others are not looked at.
[[nodiscard]] StartupRequest startupRequest(const Environment& environment,
                                            const QList<QByteArray>& arguments = {});

} // namespace amberquill::desktop
