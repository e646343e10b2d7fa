#include "platform/linux/applications/launching/ApplicationId.h"

#include "platform/linux/applications/entries/EntryIndex.h"

namespace amberquill::desktop {

QString applicationIdFor(const QString& path, const DataFolders& folders) {
    if (!path.endsWith(desktopFileEnding)) {
        return {};
    }
    const QString fileName = path.sliced(path.lastIndexOf(u'/') + 1);
    return desktopIdFor(path, folders.below(u"applications"))
        .value_or(fileName)
        .chopped(desktopFileEnding.size());
}

} // namespace amberquill::desktop
