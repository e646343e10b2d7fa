#include "platform/linux/applications/entries/DesktopEntryApplications.h"

#include "platform/common/Utf8.h"
#include "platform/linux/applications/entries/EntryIndex.h"
#include "platform/linux/applications/entries/EntryTokens.h"
#include "platform/linux/applications/entries/ProgramLookup.h"
#include "platform/linux/environment/BaseFolders.h"
#include "platform/linux/files/FolderReader.h"
#include "platform/linux/files/RegularFile.h"

#include <QLoggingCategory>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>

namespace amberquill::desktop {
namespace {

Q_LOGGING_CATEGORY(entriesLog, "amberquill.entries", QtCriticalMsg)

// An entry's name if it is listed, else the reason why not.
struct ListedName {
    std::optional<QString> name;
    const char* reason = nullptr;
};

// Decides which entries one scan lists. Parses only the values that the decision needs.
class Listing {
public:
    explicit Listing(const EntrySettings& settings)
        : settings_(settings)
        , programs_(settings.programFolders) {}

    ListedName decide(QByteArrayView bytes) {
        const auto tokens = tokenizeEntry(bytes, settings_.locale);
        if (!tokens) {
            return {.name = {}, .reason = "not a desktop entry, or over a bound"};
        }
        if (const char* const reason = tokens->invalidReason()) {
            return {.name = {}, .reason = reason};
        }
        if (tokens->isTrue(EntryKey::Hidden)) {
            return {.name = {}, .reason = "Hidden"};
        }
        if (tokens->isTrue(EntryKey::NoDisplay)) {
            return {.name = {}, .reason = "NoDisplay"};
        }
        if (!isShownIn(settings_.currentDesktops, tokens->list(EntryKey::OnlyShowIn),
                       tokens->list(EntryKey::NotShowIn))) {
            return {.name = {}, .reason = "not for this desktop"};
        }
        const QString tryExec = tokens->text(EntryKey::TryExec);
        if (!tryExec.isEmpty() && !programs_.isInstalled(tryExec)) {
            return {.name = {}, .reason = "TryExec is not installed"};
        }
        return {.name = tokens->text(EntryKey::Name)};
    }

private:
    const EntrySettings& settings_;
    ProgramLookup programs_;
};

struct NamedEntry {
    QByteArray id;
    QString path;
    ListedName listed;
};

// The entries of one folder, each id once.
struct FolderEntries {
    std::vector<NamedEntry> entries;
    ScannedFolders scanned;
};

FolderEntries readEntries(const QString& path, const EntrySettings& settings, const RootReaders::GoOn& goOn) {
    FolderEntries result;
    const FileDescriptor folder = openFolder(AT_FDCWD, path.toUtf8().constData());
    Listing listing(settings);
    QByteArray buffer;
    for (IndexedEntry& entry : indexEntries({path}, result.scanned)) {
        goOn();
        if (!folder.isOpen()) {
            continue;
        }
        const auto bytes = readRegularFile(folder.get(), entry.file.constData(), maximumEntryBytes, buffer);
        const char* const readError = errno == EFBIG ? "too large" : "cannot be read";
        result.entries.push_back(
            {std::move(entry.id), pathBelow(path, textOfUtf8(entry.file)),
             bytes ? listing.decide(*bytes) : ListedName{.name = {}, .reason = readError}});
    }
    return result;
}

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

DesktopEntryApplications::DesktopEntryApplications(EntrySettings settings, RootReaders* readers)
    : settings_(std::move(settings))
    , folders_(settings_.dataFolders.below(u"applications"))
    , readers_(readers) {}

std::vector<RegisteredApplication> DesktopEntryApplications::list(ScannedFolders& folders) const {
    const auto read = readRoots<FolderEntries>(
        readers_, QStringLiteral("entries"), folders_,
        [settings = settings_](const QString& folder, const RootReaders::GoOn& goOn) {
            return readEntries(folder, settings, goOn);
        });
    std::vector<const NamedEntry*> candidates;
    for (std::size_t place = 0; place < read.size(); ++place) {
        if (read[place] == nullptr) {
            folders.noteGivenUp(folders_[static_cast<qsizetype>(place)]);
            continue;
        }
        folders.append(read[place]->scanned);
        for (const NamedEntry& entry : read[place]->entries) {
            candidates.push_back(&entry);
        }
    }
    // Stable, so that entries of an earlier folder stay before those of a later one.
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const NamedEntry* left, const NamedEntry* right) { return left->id < right->id; });
    candidates.erase(
        std::unique(candidates.begin(), candidates.end(),
                    [](const NamedEntry* left, const NamedEntry* right) { return left->id == right->id; }),
        candidates.end());
    std::vector<RegisteredApplication> applications;
    for (const NamedEntry* entry : candidates) {
        if (entry->id == ownDesktopId) {
            continue;
        }
        if (entry->listed.name) {
            applications.push_back({entry->path, *entry->listed.name});
        } else {
            qCDebug(entriesLog) << "not listed:" << entry->path << entry->listed.reason;
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
