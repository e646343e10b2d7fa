#include "platform/linux/applications/launching/StartLimits.h"

#include <QFile>

namespace amberquill::desktop {

namespace {

std::optional<rlimit> currentLimit(std::size_t resource) {
    rlimit limit{};
    // glibc declares the resource as an enumeration in C++.
    if (getrlimit(static_cast<__rlimit_resource_t>(resource), &limit) != 0) {
        return std::nullopt;
    }
    return limit;
}

} // namespace

StartLimits StartLimits::capture() {
    StartLimits limits;
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
