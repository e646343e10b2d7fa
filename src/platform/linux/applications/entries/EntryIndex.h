#pragma once

#include "platform/ScannedFolders.h"
#include "platform/linux/environment/BaseFolders.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <optional>
#include <vector>

// Desktop entry ids and the files that have them, by the Desktop Menu Specification. Works with file names
// only and opens no entry.
namespace amberquill::desktop {

inline constexpr QStringView desktopFileExtension(u".desktop");

struct IndexedEntry {
    QByteArray id;          // `kde-kate.desktop`
    QByteArray file;        // below its folder: `kde/kate.desktop`
    std::size_t folder = 0; // index of that folder in the list that was searched
};

inline constexpr int maximumEntryDepth = 16;    // levels below a folder
inline constexpr int maximumVisitsOfFolder = 8; // by way of symbolic links, beside its own path
inline constexpr std::size_t maximumIndexedEntries = 1'000'000;

// One file for each id, in byte order of the ids: the one in the earliest folder; within a folder, the one
// nearest to the top, then the first in byte order. Symbolic links are followed, but never back into a
// folder that is being walked. Dangling links are left out, and a folder is never an entry. Anything else
// named `*.desktop` takes the id, readable or not: a pipe or `/dev/null` in an early folder hides the entry
// in a later one. The folders' states are added to `scanned`.
[[nodiscard]] std::vector<IndexedEntry> indexEntries(const QStringList& folders, ScannedFolders& scanned);

// The id of the file at `path`; none: it is in none of the folders, or not a `.desktop` file. Does not touch
// the disk.
[[nodiscard]] std::optional<QString> desktopIdFor(QStringView path, const QStringList& folders);

// The same without `.desktop`, as window systems and service managers name applications. A file outside of
// the application folders has its own name for an id. Empty: not a desktop file.
[[nodiscard]] QString applicationIdFor(const QString& path, const DataFolders& folders);

} // namespace amberquill::desktop
