#include "platform/linux/process/SessionBus.h"

#include <QtGlobal>
#include <sys/stat.h>

namespace amberquill::desktop {

bool hasSessionBus(const Environment& environment) {
    if (const auto address = environment("DBUS_SESSION_BUS_ADDRESS"); address && !address->isEmpty()) {
        return true;
    }
    const auto runtimeFolder = environment("XDG_RUNTIME_DIR");
    struct stat status = {};
    return runtimeFolder && runtimeFolder->startsWith('/') &&
           ::stat((*runtimeFolder + "/bus").constData(), &status) == 0 && S_ISSOCK(status.st_mode);
}

void doNotLaunchSessionBus(const Environment& environment) {
    if (!hasSessionBus(environment)) {
        // An address that leads nowhere; without any, the reference library launches a bus.
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    }
}

} // namespace amberquill::desktop
