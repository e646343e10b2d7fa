#include "platform/linux/environment/DataFolders.h"

#include "platform/linux/environment/BaseFolders.h"

namespace amberquill::desktop {
namespace {

constexpr const char* defaultDataFolders = "/usr/local/share:/usr/share";

void appendIfLacking(QStringList& folders, const QString& folder) {
    if (!folders.contains(folder)) {
        folders.append(folder);
    }
}

} // namespace

QStringList DataFolders::below(QStringView name) const {
    QStringList result;
    result.reserve(folders.size());
    for (const QString& folder : folders) {
        result.append(pathBelow(folder, name));
    }
    return result;
}

DataFolders dataFoldersFromEnvironment(const Environment& environment) {
    const QString own = baseFolder(environment, "XDG_DATA_HOME", u".local/share");
    const QByteArray listed = environment("XDG_DATA_DIRS").value_or(QByteArray());
    DataFolders result;
    result.folders.append(own);
    for (const QByteArray& part : (listed.isEmpty() ? QByteArray(defaultDataFolders) : listed).split(':')) {
        if (const auto folder = absolutePath(part)) {
            appendIfLacking(result.folders, *folder);
        }
    }
    // A session that was started before these were installed, or by something that does not read the
    // system's profile, has variables without them; their applications are wanted all the same.
    appendIfLacking(result.folders, own + QLatin1String("/flatpak/exports/share"));
    appendIfLacking(result.folders, QStringLiteral("/var/lib/flatpak/exports/share"));
    appendIfLacking(result.folders, QStringLiteral("/var/lib/snapd/desktop"));
    return result;
}

} // namespace amberquill::desktop
