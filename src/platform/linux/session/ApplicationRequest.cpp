#include "platform/linux/session/ApplicationRequest.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace amberquill::desktop {

namespace {

constexpr auto applicationInterface = "org.freedesktop.Application";
constexpr auto activateAction = "ActivateAction";
constexpr auto activationTokenKey = "activation-token";
constexpr auto startupIdKey = "desktop-startup-id";

struct Action {
    const char* name;
    ApplicationRequest::Kind kind;
};
constexpr std::array actions = {Action{"toggle", ApplicationRequest::Kind::Toggle},
                                Action{"show", ApplicationRequest::Kind::Show},
                                Action{"hide", ApplicationRequest::Kind::Hide}};

// In bytes: tokens and startup ids are passed unchanged to window managers.
constexpr std::size_t longestToken = 1024;

// The text at the iterator; empty if it is no text or too long for a token.
QString readToken(DBusMessageIter& iterator) {
    if (dbus_message_iter_get_arg_type(&iterator) != DBUS_TYPE_STRING) {
        return {};
    }
    const char* text = nullptr;
    dbus_message_iter_get_basic(&iterator, static_cast<void*>(&text));
    return std::strlen(text) <= longestToken ? QString::fromUtf8(text) : QString();
}

// Reads the dictionary at the iterator. The caller has checked the message's signature.
void readPlatformData(DBusMessageIter& iterator, ApplicationRequest& request) {
    DBusMessageIter entries;
    dbus_message_iter_recurse(&iterator, &entries);
    for (; dbus_message_iter_get_arg_type(&entries) == DBUS_TYPE_DICT_ENTRY;
         dbus_message_iter_next(&entries)) {
        DBusMessageIter entry;
        dbus_message_iter_recurse(&entries, &entry);
        const char* key = nullptr;
        dbus_message_iter_get_basic(&entry, static_cast<void*>(&key));
        dbus_message_iter_next(&entry);
        DBusMessageIter value;
        dbus_message_iter_recurse(&entry, &value);
        if (std::strcmp(key, activationTokenKey) == 0) {
            request.activationToken = readToken(value);
        } else if (std::strcmp(key, startupIdKey) == 0) {
            request.startupId = readToken(value);
        }
    }
}

void appendEntry(DBusMessageIter& dictionary, const char* key, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    const char* const value = bytes.constData();
    if (bytes.isEmpty() || dbus_validate_utf8(value, nullptr) == FALSE) {
        return;
    }
    DBusMessageIter entry;
    DBusMessageIter variant;
    dbus_message_iter_open_container(&dictionary, DBUS_TYPE_DICT_ENTRY, nullptr, &entry);
    dbus_message_iter_append_basic(&entry, DBUS_TYPE_STRING, static_cast<const void*>(&key));
    dbus_message_iter_open_container(&entry, DBUS_TYPE_VARIANT, DBUS_TYPE_STRING_AS_STRING, &variant);
    dbus_message_iter_append_basic(&variant, DBUS_TYPE_STRING, static_cast<const void*>(&value));
    dbus_message_iter_close_container(&entry, &variant);
    dbus_message_iter_close_container(&dictionary, &entry);
}

// Appends the arguments of ActivateAction before the platform data: a name, and an empty parameter list.
void appendAction(DBusMessageIter& arguments, ApplicationRequest::Kind kind) {
    const auto* const action = std::find_if(actions.begin(), actions.end(),
                                            [kind](const Action& known) { return known.kind == kind; });
    dbus_message_iter_append_basic(&arguments, DBUS_TYPE_STRING, static_cast<const void*>(&action->name));
    DBusMessageIter parameter;
    dbus_message_iter_open_container(&arguments, DBUS_TYPE_ARRAY, "v", &parameter);
    dbus_message_iter_close_container(&arguments, &parameter);
}

} // namespace

std::optional<ApplicationRequest::Kind> actionKind(std::string_view action) {
    for (const Action& known : actions) {
        if (action == known.name) {
            return known.kind;
        }
    }
    return std::nullopt;
}

QString tokenFor(const ApplicationRequest& request, QStringView platform) {
    const bool x11 = platform == u"xcb";
    const QString& first = x11 ? request.startupId : request.activationToken;
    const QString& second = x11 ? request.activationToken : request.startupId;
    return first.isEmpty() ? second : first;
}

ReadRequest readRequest(DBusMessage& call) {
    struct Method {
        const char* name;
        const char* signature;
        int argumentsBeforePlatformData;
    };
    for (const Method& method : {Method{"Activate", "a{sv}", 0}, Method{"Open", "asa{sv}", 1},
                                 Method{activateAction, "sava{sv}", 2}}) {
        if (dbus_message_is_method_call(&call, applicationInterface, method.name) == FALSE) {
            continue;
        }
        if (dbus_message_has_signature(&call, method.signature) == FALSE) {
            return RequestRefusal{DBUS_ERROR_INVALID_ARGS};
        }
        ApplicationRequest request;
        DBusMessageIter argument;
        dbus_message_iter_init(&call, &argument);
        if (method.name == activateAction) {
            const char* action = nullptr;
            dbus_message_iter_get_basic(&argument, static_cast<void*>(&action));
            const auto kind = actionKind(action);
            if (!kind) {
                return RequestRefusal{DBUS_ERROR_INVALID_ARGS};
            }
            request.kind = *kind;
        }
        for (int i = 0; i < method.argumentsBeforePlatformData; ++i) {
            dbus_message_iter_next(&argument);
        }
        readPlatformData(argument, request);
        return request;
    }
    return {};
}

BusMessage makeRequestCall(const ApplicationRequest& request) {
    const bool shows = request.kind == ApplicationRequest::Kind::Show;
    BusMessage call = makeCall(applicationBusName, applicationBusPath, applicationInterface,
                               shows ? "Activate" : activateAction);
    dbus_message_set_auto_start(call.get(), FALSE);
    DBusMessageIter arguments;
    DBusMessageIter dictionary;
    dbus_message_iter_init_append(call.get(), &arguments);
    if (!shows) {
        appendAction(arguments, request.kind);
    }
    dbus_message_iter_open_container(&arguments, DBUS_TYPE_ARRAY, "{sv}", &dictionary);
    appendEntry(dictionary, activationTokenKey, request.activationToken);
    appendEntry(dictionary, startupIdKey, request.startupId);
    dbus_message_iter_close_container(&arguments, &dictionary);
    return call;
}

const char* introspection() {
    return DBUS_INTROSPECT_1_0_XML_DOCTYPE_DECL_NODE R"(<node>
  <interface name="org.freedesktop.DBus.Introspectable">
    <method name="Introspect"><arg name="data" type="s" direction="out"/></method>
  </interface>
  <interface name="org.freedesktop.Application">
    <method name="Activate"><arg name="platform_data" type="a{sv}" direction="in"/></method>
    <method name="Open">
      <arg name="uris" type="as" direction="in"/>
      <arg name="platform_data" type="a{sv}" direction="in"/>
    </method>
    <method name="ActivateAction">
      <arg name="action_name" type="s" direction="in"/>
      <arg name="parameter" type="av" direction="in"/>
      <arg name="platform_data" type="a{sv}" direction="in"/>
    </method>
  </interface>
</node>
)";
}

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
