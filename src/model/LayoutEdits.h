#pragma once

#include "data/LaunchItem.h"

#include <QString>
#include <QUuid>
#include <cstddef>
#include <optional>

// Edits of a layout by drags and folder operations. None adds or removes an application.
namespace amberquill::LayoutEdits {

// The index of the item with this id.
std::optional<std::size_t> indexOf(const LaunchItems& items, const QString& id);

// The index of the first folder with this id.
std::optional<std::size_t> folderIndex(const LaunchItems& items, const QUuid& id);

// Makes the ids of folders unique: of several with one id, the first keeps it.
void separateFolders(LaunchItems& items);

// Moves the item at index `from` to index `to`.
void move(LaunchItems& items, std::size_t from, std::size_t to);

// The same inside the folder at index `folder`.
void moveInFolder(LaunchItems& items, std::size_t folder, qsizetype from, qsizetype to);

void rename(LaunchItems& items, std::size_t folder, const QString& name);

// Appends the application at index `dragged` to the folder `targetId`, or makes a folder of that name from
// the application `targetId` and the dragged one. The result is the new folder's id. Does nothing without a
// target.
std::optional<QUuid> merge(LaunchItems& items, std::size_t dragged, const QString& targetId,
                           const QString& newFolderName);

// Moves the application out of the folder to the index after it. A folder left with one application becomes
// that application; an empty one is replaced by `path`. The result is the index of `path`.
std::size_t pullOut(LaunchItems& items, std::size_t folder, const QString& path);

} // namespace amberquill::LayoutEdits
