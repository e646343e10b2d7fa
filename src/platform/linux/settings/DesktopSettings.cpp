#include "platform/linux/settings/DesktopSettings.h"

#include "platform/linux/environment/BaseFolders.h"

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(settingsLog, "amberquill.settings", QtCriticalMsg)

using namespace Qt::StringLiterals;

QStringList currentDesktops(const Environment& environment) {
    return QString::fromUtf8(environment("XDG_CURRENT_DESKTOP").value_or(QByteArray())).split(u':');
}

QStringList configurationFolders(const Environment& environment) {
    QStringList folders{baseFolder(environment, "XDG_CONFIG_HOME", u".config")};
    auto system = environment("XDG_CONFIG_DIRS").value_or(QByteArray());
    if (system.isEmpty()) {
        system = "/etc/xdg";
    }
    for (const auto& folder : system.split(':')) {
        if (const auto path = absolutePath(folder)) {
            folders.push_back(*path);
        }
    }
    return folders;
}

QStringList kdeSettingsFiles(const QStringList& configuration) {
    QStringList files{pathBelow(configuration.front(), u"kdeglobals"),
                      pathBelow(configuration.front(), u"kdedefaults/kdeglobals")};
    for (const auto& folder : configuration.sliced(1)) {
        files.push_back(pathBelow(folder, u"kdeglobals"));
    }
    return files;
}

} // namespace amberquill::desktop
