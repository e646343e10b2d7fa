#include "platform/linux/applications/launching/StartEnvironment.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

// Each of these is said to one process. JOURNAL_STREAM is not among them: it describes the standard streams,
// which applications inherit, and is compared with them before it is believed.
constexpr std::array<std::string_view, 20> saidToUsAlone = {
    "XDG_ACTIVATION_TOKEN",
    "DESKTOP_STARTUP_ID",
    "DESKTOP_AUTOSTART_ID", // a session manager's place for one client
    "GIO_LAUNCHED_DESKTOP_FILE",
    "GIO_LAUNCHED_DESKTOP_FILE_PID",
    "BAMF_DESKTOP_FILE_HINT", // whose windows a task bar takes these for
    "NOTIFY_SOCKET",          // readiness and watchdog of a service
    "WATCHDOG_PID",
    "WATCHDOG_USEC",
    "LISTEN_FDS", // sockets passed to a service
    "LISTEN_PID",
    "LISTEN_PIDFDID",
    "LISTEN_FDNAMES",
    "FDSTORE",
    "INVOCATION_ID", // one run of one unit; an application is a unit of its own
    "SYSTEMD_EXEC_PID",
    "MEMORY_PRESSURE_WATCH",
    "MEMORY_PRESSURE_WRITE",
    "DBUS_STARTER_ADDRESS", // started by the bus
    "DBUS_STARTER_BUS_TYPE",
};

std::string_view nameOf(const QByteArray& entry) {
    const auto length = std::max<qsizetype>(entry.indexOf('='), 0);
    return {entry.constData(), static_cast<std::size_t>(length)};
}

void set(std::vector<QByteArray>& entries, QByteArrayView name, const QByteArray& value) {
    const std::string_view wanted(name.data(), static_cast<std::size_t>(name.size()));
    std::erase_if(entries, [wanted](const QByteArray& entry) { return nameOf(entry) == wanted; });
    entries.push_back(name.toByteArray() + '=' + value);
}

} // namespace

StartEnvironment StartEnvironment::capture() {
    std::vector<QByteArray> entries;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        entries.emplace_back(*entry);
    }
    return StartEnvironment(std::move(entries));
}

StartEnvironment::StartEnvironment(std::vector<QByteArray> entries)
    : entries_(std::move(entries)) {
    std::erase_if(entries_, [](const QByteArray& entry) { return nameOf(entry).empty(); });
}

std::optional<QByteArray> StartEnvironment::value(QByteArrayView name) const {
    const std::string_view wanted(name.data(), static_cast<std::size_t>(name.size()));
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [wanted](const QByteArray& entry) { return nameOf(entry) == wanted; });
    return found == entries_.end() ? std::nullopt : std::optional(found->sliced(name.size() + 1));
}

Environment StartEnvironment::lookup() const {
    return [copy = *this](const char* name) { return copy.value(name); };
}

std::vector<QByteArray> StartEnvironment::forChild(const ChildVariables& variables) const {
    std::vector<QByteArray> entries = entries_;
    std::erase_if(entries, [](const QByteArray& entry) {
        return std::find(saidToUsAlone.begin(), saidToUsAlone.end(), nameOf(entry)) != saidToUsAlone.end();
    });
    if (!variables.token.isEmpty()) {
        // A toolkit reads the one of the window system it finds itself under.
        set(entries, "XDG_ACTIVATION_TOKEN", variables.token);
        set(entries, "DESKTOP_STARTUP_ID", variables.token);
    }
    if (!variables.entryPath.isEmpty()) {
        set(entries, "GIO_LAUNCHED_DESKTOP_FILE", variables.entryPath);
    }
    if (!variables.workingDirectory.isEmpty()) {
        set(entries, "PWD", variables.workingDirectory);
    }
    return entries;
}

} // namespace amberquill::desktop
