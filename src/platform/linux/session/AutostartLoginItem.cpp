#include "platform/linux/session/AutostartLoginItem.h"

#include "platform/linux/applications/entries/DesktopEntryApplications.h"
#include "platform/linux/environment/BaseFolders.h"
#include "platform/linux/session/AutostartEntry.h"

#include <algorithm>

namespace amberquill::desktop {
namespace {

constexpr const char* defaultConfigurationFolders = "/etc/xdg";
constexpr QStringView autostart = u"autostart";

} // namespace

QStringList autostartFolders(const Environment& environment) {
    QStringList folders = {pathBelow(baseFolder(environment, "XDG_CONFIG_HOME", u".config"), autostart)};
    const QByteArray listed = environment("XDG_CONFIG_DIRS").value_or(QByteArray());
    for (const QByteArray& part :
         (listed.isEmpty() ? QByteArray(defaultConfigurationFolders) : listed).split(':')) {
        if (const auto folder = absolutePath(part)) {
            folders.append(pathBelow(*folder, autostart));
        }
    }
    folders.removeDuplicates();
    return folders;
}

AutostartLoginItem::AutostartLoginItem(FileSystem& files, Settings settings)
    : files_(files)
    , settings_(std::move(settings)) {}

QString AutostartLoginItem::entryIn(const QString& folder) {
    return pathBelow(folder, QString::fromLatin1(ownDesktopId));
}

std::optional<QByteArray> AutostartLoginItem::readEntryIn(const QString& folder) const {
    return files_.readFile(entryIn(folder), maximumEntryBytes);
}

bool AutostartLoginItem::isEnabled() const {
    for (const QString& folder : settings_.folders) {
        if (const auto entry = readEntryIn(folder)) {
            return isStartedAtLogin(*entry, settings_.currentDesktops);
        }
    }
    return false;
}

void AutostartLoginItem::enable() {
    if (!isEnabled()) {
        files_.writeAtomically(entryIn(settings_.folders.first()), autostartEntryFor(settings_.program));
    }
}

void AutostartLoginItem::disable() {
    const bool isInSystem =
        std::any_of(settings_.folders.begin() + 1, settings_.folders.end(),
                    [this](const QString& folder) { return readEntryIn(folder).has_value(); });
    const QString own = entryIn(settings_.folders.first());
    if (isInSystem) {
        files_.writeAtomically(own, hiddenAutostartEntry());
    } else {
        files_.remove(own);
    }
}

} // namespace amberquill::desktop
