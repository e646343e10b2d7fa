#include "platform/linux/applications/entries/DesktopEntryApplications.h"

#include "platform/Utf8.h"
#include "platform/linux/applications/entries/EntryIndex.h"
#include "platform/linux/applications/entries/EntryTokens.h"
#include "platform/linux/applications/entries/ProgramLookup.h"
#include "platform/linux/files/BaseFolders.h"
#include "platform/linux/files/FolderReader.h"
#include "platform/linux/files/RegularFile.h"

#include <QLoggingCategory>
#include <fcntl.h>

namespace amberquill::desktop {
namespace {

Q_LOGGING_CATEGORY(log, "amberquill.entries", QtCriticalMsg)

// One scan's quick look at an entry: only what decides whether it is listed is made sense of.
class Listing {
public:
    explicit Listing(const EntrySettings& settings)
        : settings_(settings)
        , programs_(settings.programFolders) {}

    // The name to list the entry under, or none: it is not to be listed.
    std::optional<QString> nameToList(QByteArrayView bytes) {
        const auto tokens = tokenizeEntry(bytes, settings_.locale);
        if (!tokens || !tokens->isValidApplication() || tokens->isTrue(EntryKey::hidden) ||
            tokens->isTrue(EntryKey::noDisplay) ||
            !isShownIn(settings_.currentDesktops, tokens->list(EntryKey::onlyShowIn),
                       tokens->list(EntryKey::notShowIn))) {
            return std::nullopt;
        }
        const QString tryExec = tokens->text(EntryKey::tryExec);
        if (!tryExec.isEmpty() && !programs_.isInstalled(tryExec)) {
            return std::nullopt;
        }
        return tokens->text(EntryKey::name);
    }

private:
    const EntrySettings& settings_;
    ProgramLookup programs_;
};

} // namespace

EntrySettings entrySettingsFromEnvironment(const Environment& environment) {
    EntrySettings settings;
    settings.dataFolders = dataFoldersFromEnvironment(environment);
    settings.locale = entryLocaleFromEnvironment(environment);
    settings.currentDesktops = QString::fromUtf8(environment("XDG_CURRENT_DESKTOP").value_or(QByteArray()))
                                   .split(QLatin1Char(':'), Qt::SkipEmptyParts);
    settings.programFolders = programFoldersFrom(environment("PATH").value_or(QByteArray()));
    return settings;
}

bool isShownIn(const QStringList& currentDesktops, const std::optional<QStringList>& onlyShowIn,
               const std::optional<QStringList>& notShowIn) {
    for (const QString& desktop : currentDesktops) {
        if (onlyShowIn && onlyShowIn->contains(desktop)) {
            return true;
        }
        if (notShowIn && notShowIn->contains(desktop)) {
            return false;
        }
    }
    return !onlyShowIn;
}

DesktopEntryApplications::DesktopEntryApplications(EntrySettings settings)
    : settings_(std::move(settings))
    , folders_(settings_.dataFolders.below(u"applications")) {}

std::vector<RegisteredApplication> DesktopEntryApplications::list(ScannedFolders& folders) const {
    std::vector<FileDescriptor> opened;
    for (const QString& folder : folders_) {
        opened.push_back(openFolder(AT_FDCWD, folder.toUtf8().constData()));
    }
    Listing listing(settings_);
    std::vector<RegisteredApplication> applications;
    QByteArray buffer;
    for (const IndexedEntry& entry : indexEntries(folders_, folders)) {
        const FileDescriptor& folder = opened[entry.folder];
        if (entry.id == ownDesktopId || !folder.isOpen()) {
            continue;
        }
        const auto bytes = readRegularFile(folder.get(), entry.file.constData(), maximumEntryBytes, buffer);
        const auto name = bytes ? listing.nameToList(*bytes) : std::nullopt;
        if (name) {
            applications.push_back(
                {pathBelow(folders_[static_cast<qsizetype>(entry.folder)], textOfUtf8(entry.file)), *name});
        } else {
            qCDebug(log) << "not listed:" << entry.id;
        }
    }
    return applications;
}

QStringList DesktopEntryApplications::watchedFolders() const {
    return folders_;
}

std::optional<QString> DesktopEntryApplications::desktopId(const QString& path) const {
    return desktopIdFor(path, folders_);
}

std::optional<QString> DesktopEntryApplications::name(const QString& path) const {
    const auto entry = readDesktopEntry(path, settings_.locale);
    return entry ? std::optional(entry->name) : std::nullopt;
}

} // namespace amberquill::desktop
