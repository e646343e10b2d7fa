#include "platform/linux/environment/EnvironmentLocations.h"

#include "platform/linux/environment/BaseFolders.h"

#include <array>
#include <climits>
#include <unistd.h>

namespace amberquill::desktop {
namespace {

QString bundleAround(const QString& program) {
    constexpr QLatin1String ending(".app");
    for (qsizetype slash = program.lastIndexOf(QLatin1Char('/')); slash > 0;) {
        const QStringView folder = QStringView(program).left(slash);
        slash = folder.lastIndexOf(QLatin1Char('/'));
        const QStringView name = folder.mid(slash + 1);
        if (name.size() > ending.size() && name.endsWith(ending)) {
            return folder.toString();
        }
    }
    return {};
}

} // namespace

QString runningProgram() {
    std::array<char, PATH_MAX> target = {};
    const ssize_t size = ::readlink("/proc/self/exe", target.data(), target.size());
    if (size <= 0 || size == PATH_MAX) {
        return {};
    }
    return absolutePath(QByteArrayView(target.data(), size)).value_or(QString());
}

Locations locationsFromEnvironment(const Environment& environment, const QString& program) {
    return {.home = homeFolder(environment),
            .applicationSupport = baseFolder(environment, "XDG_DATA_HOME", u".local/share"),
            .configuration = baseFolder(environment, "XDG_CONFIG_HOME", u".config"),
            .caches = baseFolder(environment, "XDG_CACHE_HOME", u".cache"),
            .ownBundle = bundleAround(program)};
}

} // namespace amberquill::desktop
