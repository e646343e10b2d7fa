#pragma once

#include "platform/ScannedFolders.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

// Which file stands for each desktop entry id, by the Desktop Menu Specification: names only, nothing is
// opened.
namespace amberquill::desktop {

struct IndexedEntry {
    QByteArray id;          // `kde-kate.desktop`
    QByteArray file;        // below its folder: `kde/kate.desktop`
    std::size_t folder = 0; // place of that folder among those asked for
};

inline constexpr int maximumEntryDepth = 16;    // levels below a folder
inline constexpr int maximumVisitsOfFolder = 8; // by way of symbolic links, beside its own path
inline constexpr std::size_t maximumIndexedEntries = 1'000'000;

// One file for each id, in byte order of the ids: the one in the earliest folder; within a folder, the one
// nearest to the top, then the first in byte order. Symbolic links are followed, and never back into a
// folder that is being walked. A link that leads nowhere is not there; a folder is never a file. Anything
// else that has the ending takes the id, readable or not: a pipe or `/dev/null` in an early folder hides what
// is in a later one. `scanned` is told of the folders.
[[nodiscard]] std::vector<IndexedEntry> indexEntries(const QStringList& folders, ScannedFolders& scanned);

// The id of the file at `path`, or none: it is in none of the folders, or not a `.desktop` file. Of the path
// alone, nothing is looked up.
[[nodiscard]] std::optional<QString> desktopIdFor(QStringView path, const QStringList& folders);

} // namespace amberquill::desktop
