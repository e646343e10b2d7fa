#pragma once

#include "data/LaunchItem.h"
#include "platform/FileSystem.h"
#include "platform/WriteBehind.h"

#include <QByteArray>
#include <QString>
#include <optional>

namespace amberquill {

// What the private layout file held when it was read.
struct StoredLayout {
    QByteArray content;
    std::optional<LaunchItems> items; // none: no file, or one that does not decode
};

// The private layout file. Nothing is ever reported: what cannot be read is an empty layout, what cannot be
// written stays in memory and is tried again (WriteBehind). Main thread only; the writing itself happens away
// from it.
class LayoutStore {
public:
    // `folder` is where applications keep what the user would miss; both services outlive the store.
    LayoutStore(MainQueue& queue, FileSystem& files, const QString& folder);

    // Reads the file. Safe on any thread, and for a layout of thousands worth one of its own.
    [[nodiscard]] static StoredLayout read(const FileSystem& files, const QString& folder);

    // The layout to start with, and what the file is known to hold from now on.
    [[nodiscard]] LaunchItems start(StoredLayout stored);

    [[nodiscard]] LaunchItems load() { return start(read(files_, folder_)); }

    // Writes the layout, unless it is what the file holds already.
    void save(const LaunchItems& items);

    // Writes soon what could not be written before.
    void tryAgain() { file_.tryAgain(); }

    // Returns when the last save is on the disk, or has failed.
    void flush() { file_.flush(); }

private:
    FileSystem& files_;
    QString folder_;
    WriteBehind file_;
};

} // namespace amberquill
