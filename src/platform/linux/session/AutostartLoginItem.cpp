#include "platform/linux/session/AutostartLoginItem.h"

#include "platform/linux/applications/entries/DesktopEntryApplications.h"
#include "platform/linux/applications/entries/EntryTokens.h"
#include "platform/linux/environment/BaseFolders.h"
#include "platform/linux/session/SingleInstance.h"

#include <algorithm>

namespace amberquill::desktop {

namespace {

constexpr const char* heading =
    "[Desktop Entry]\nType=Application\nName=Amberquill\nIcon=org.amberquill.Amberquill\n";

// One argument of an `Exec` line: quoted, per cent signs escaped.
QString quotedArgument(const QString& argument) {
    QString quoted(QLatin1Char('"'));
    for (const QChar character : argument) {
        if (QStringView(u"\"`$\\").contains(character)) {
            quoted += QLatin1Char('\\');
        }
        quoted += character;
        if (character == QLatin1Char('%')) {
            quoted += character;
        }
    }
    return quoted + QLatin1Char('"');
}

// The value of a key: its backslashes and line breaks escaped.
QString stringValue(QString text) {
    return text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .replace(QLatin1Char('\r'), QLatin1String("\\r"))
        .replace(QLatin1Char('\t'), QLatin1String("\\t"));
}

constexpr const char* defaultConfigurationFolders = "/etc/xdg";
constexpr QStringView autostart = u"autostart";

} // namespace

QByteArray autostartEntryFor(const QString& program) {
    return heading + QByteArray("Exec=") + stringValue(quotedArgument(program)).toUtf8() + '\n';
}

QByteArray hiddenAutostartEntry() {
    return heading + QByteArray("Hidden=true\n");
}

bool isStartedAtLogin(QByteArrayView entry, const QStringList& currentDesktops) {
    const auto tokens = tokenizeEntry(entry, entryLocaleFor({}));
    return tokens && tokens->isValidApplication() && !tokens->isTrue(EntryKey::Hidden) &&
           tokens->boolean(EntryKey::GnomeAutostartEnabled).value_or(true) &&
           isShownIn(currentDesktops, tokens->list(EntryKey::OnlyShowIn), tokens->list(EntryKey::NotShowIn));
}

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

void AutostartLoginItem::write(const QByteArray& entry) {
    const QString path = entryIn(settings_.folders.first());
    if (!files_.writeAtomically(path, entry)) {
        qCDebug(sessionLog) << "cannot write" << path;
    }
}

void AutostartLoginItem::enable() {
    if (!isEnabled()) {
        write(autostartEntryFor(settings_.program));
    }
}

void AutostartLoginItem::disable() {
    const bool isInSystem =
        std::any_of(settings_.folders.begin() + 1, settings_.folders.end(),
                    [this](const QString& folder) { return readEntryIn(folder).has_value(); });
    const QString own = entryIn(settings_.folders.first());
    if (isInSystem) {
        write(hiddenAutostartEntry());
    } else {
        files_.remove(own);
    }
}

} // namespace amberquill::desktop
