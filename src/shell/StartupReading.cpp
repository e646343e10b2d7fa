#include "shell/StartupReading.h"

#include "shell/IconDiskCache.h"
#include "shell/NameDiskCache.h"
#include "shell/ShellLog.h"

#include <utility>

namespace amberquill {

StartupReading::StartupReading(Services services)
    : services_(std::move(services)) {
    layout_.start([this] { return LayoutStore::read(services_.files, services_.applicationSupport); });
    caches_.start([this] {
        Caches caches{NameDiskCache::load(services_.files, services_.caches, services_.language), {}};
        if (caches.names.isEmpty()) {
            qCDebug(shellLog, "no names are cached: the first scan begins at once");
            firstScan_.start([this] { return services_.scan(); });
        }
        caches.icons = IconDiskCache::load(services_.files, services_.caches);
        if (caches.icons.empty()) {
            qCDebug(shellLog, "no icons are cached");
            services_.prepareDecoding();
        }
        return caches;
    });
}

StartupData StartupReading::takeBy(QDeadlineTimer deadline) const {
    StartupData data;
    auto layout = layout_.takeBy(deadline);
    data.layoutIsLate = !layout;
    if (layout) {
        data.layout = std::move(*layout);
    } else {
        qCDebug(shellLog, "the layout comes late");
    }
    if (auto caches = caches_.takeBy(deadline)) {
        data.names = std::move(caches->names);
        data.icons = std::move(caches->icons);
    } else {
        qCDebug(shellLog, "the disk caches come too late");
    }
    firstScan_.waitUntil(deadline);
    return data;
}

ScanResult StartupReading::scan() const {
    auto first = firstScan_.take();
    return first ? std::move(*first) : services_.scan();
}

bool StartupReading::isUnderWay() const {
    return layout_.isUnderWay() || caches_.isUnderWay() || firstScan_.isUnderWay();
}

} // namespace amberquill
