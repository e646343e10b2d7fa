#pragma once

#include "data/LaunchItem.h"

#include <QString>
#include <QUuid>
#include <cstddef>
#include <optional>

// What dragging and folders do to a layout. Nothing here adds an application to the layout or takes one away.
namespace amberquill::LayoutEdits {

// Where the item of this identity stands.
std::optional<std::size_t> indexOf(const LaunchItems& items, const QString& id);

// Where the first folder of this id stands.
std::optional<std::size_t> folderIndex(const LaunchItems& items, const QUuid& id);

// Gives each folder an id of its own: the first of one id keeps it.
void separateFolders(LaunchItems& items);

// Takes the item at `from` out and puts it back so that it ends at `to`; both are places in the list.
void move(LaunchItems& items, std::size_t from, std::size_t to);

// The same with two of a folder's applications. `folder` is where a folder stands.
void moveInFolder(LaunchItems& items, std::size_t folder, qsizetype from, qsizetype to);

void rename(LaunchItems& items, std::size_t folder, const QString& name);

// Puts the application at `dragged` into the folder `targetId`, at its end, or with the application
// `targetId` into a new folder of that name: then its id is the result. Without a target it stays where it
// is.
std::optional<QUuid> merge(LaunchItems& items, std::size_t dragged, const QString& targetId,
                           const QString& newFolderName);

// Takes the application out of the folder and puts it behind it. A folder left with one application becomes
// that application; one left with none goes, and `path` takes its place. The result is where `path` stands.
std::size_t pullOut(LaunchItems& items, std::size_t folder, const QString& path);

} // namespace amberquill::LayoutEdits
