#include "platform/linux/applications/launching/InheritedState.h"

#include <QFile>
#include <algorithm>
#include <string_view>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

// Variables that are meant for one process. JOURNAL_STREAM is not one of them: it describes the standard
// streams, which applications inherit, and readers compare it with them.
constexpr std::array<std::string_view, 20> launcherOnlyVariables = {
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

std::optional<rlimit> currentLimit(std::size_t resource) {
    rlimit limit{};
    // glibc declares the resource as an enumeration in C++.
    if (getrlimit(static_cast<__rlimit_resource_t>(resource), &limit) != 0) {
        return std::nullopt;
    }
    return limit;
}

} // namespace

InheritedEnvironment InheritedEnvironment::capture() {
    std::vector<QByteArray> entries;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        entries.emplace_back(*entry);
    }
    return InheritedEnvironment(std::move(entries));
}

InheritedEnvironment::InheritedEnvironment(std::vector<QByteArray> entries)
    : entries_(std::move(entries)) {
    std::erase_if(entries_, [](const QByteArray& entry) { return nameOf(entry).empty(); });
}

std::optional<QByteArray> InheritedEnvironment::value(QByteArrayView name) const {
    const std::string_view wanted(name.data(), static_cast<std::size_t>(name.size()));
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [wanted](const QByteArray& entry) { return nameOf(entry) == wanted; });
    return found == entries_.end() ? std::nullopt : std::optional(found->sliced(name.size() + 1));
}

Environment InheritedEnvironment::lookup() const {
    return [copy = *this](const char* name) { return copy.value(name); };
}

std::vector<QByteArray> InheritedEnvironment::forChild(const ChildVariables& variables) const {
    std::vector<QByteArray> entries = entries_;
    std::erase_if(entries, [](const QByteArray& entry) {
        return std::find(launcherOnlyVariables.begin(), launcherOnlyVariables.end(), nameOf(entry)) !=
               launcherOnlyVariables.end();
    });
    if (!variables.token.isEmpty()) {
        // Toolkits read the variable of their window system.
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

InheritedLimits InheritedLimits::capture() {
    InheritedLimits limits;
    for (std::size_t resource = 0; resource < limits.resources.size(); ++resource) {
        limits.resources.at(resource) = currentLimit(resource);
    }
    QFile score(QStringLiteral("/proc/self/oom_score_adj"));
    if (score.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        limits.outOfMemoryScore = score.read(16).trimmed();
    }
    return limits;
}

} // namespace amberquill::desktop
