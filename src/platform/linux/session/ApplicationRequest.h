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

// A request to the running program by the interface org.freedesktop.Application (Desktop Entry Specification,
// "D-Bus Activation"), with the token that lets the program take the focus.
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

// The request's token or startup id, whichever the platform (QGuiApplication::platformName) uses.
[[nodiscard]] QString tokenFor(const ApplicationRequest& request, QStringView platform);

// Why a call is refused: the name of a D-Bus error.
struct RequestRefusal {
    const char* error;
};

// A method call of the interface: Activate and Open show, ActivateAction carries out its action ("show",
// "hide", "toggle"). Parameters and files are ignored. std::monostate: the interface has no such method.
using ReadRequest = std::variant<std::monostate, ApplicationRequest, RequestRefusal>;
[[nodiscard]] ReadRequest readRequest(DBusMessage& call);

// The request that the action "show", "hide" or "toggle" stands for. None: another name.
[[nodiscard]] std::optional<ApplicationRequest::Kind> actionKind(std::string_view action);

// The D-Bus call that passes a request to the running program. It does not start the program.
[[nodiscard]] BusMessage makeRequestCall(const ApplicationRequest& request);

// The object's introspection data (org.freedesktop.DBus.Introspectable).
[[nodiscard]] const char* introspection();

// How the program was started: the request, which is passed to the running program if there is one, and
// whether the bus started us. In that case the bus delivers the waiting calls once we own the name.
struct StartupRequest {
    ApplicationRequest request;
    bool byTheBus = false;

    bool operator==(const StartupRequest&) const = default;
};

// Reads the environment and the arguments: `--show` (the default), `--hide` or `--toggle`. The last one
// counts; other arguments are ignored.
[[nodiscard]] StartupRequest startupRequest(const Environment& environment,
                                            const QList<QByteArray>& arguments = {});

} // namespace amberquill::desktop
