#include "shell/Preparations.h"

#include "shell/IconKeeper.h"
#include "shell/NamesKeeper.h"

namespace amberquill {

Preparations Preparations::read(const FileSystem& files, const Locations& locations,
                                const QString& language) {
    return {
        .layout = LayoutStore::read(files, locations.applicationSupport),
        .names = NamesKeeper::load(files, locations.caches, language),
        .icons = IconKeeper::load(files, locations.caches),
    };
}

} // namespace amberquill
