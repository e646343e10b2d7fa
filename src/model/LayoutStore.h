#pragma once

#include "data/LaunchItem.h"
#include "platform/FileSystem.h"

#include <QByteArray>
#include <QString>
#include <memory>

namespace amberquill {

class MainQueue;

// The private layout file. Nothing is ever reported: what cannot be read is an empty layout, what cannot be
// written stays in memory. Main thread only; the writing itself happens away from it, in the order of the
// saves.
class LayoutStore {
public:
    // `folder` is where applications keep what the user would miss; both services outlive the store.
    LayoutStore(MainQueue& queue, FileSystem& files, const QString& folder);

    [[nodiscard]] LaunchItems load();

    // Writes the layout, unless it is what the file holds already.
    void save(const LaunchItems& items);

    // Returns when the last save is on the disk, or has failed.
    void flush();

private:
    class Writer;

    MainQueue& queue_;
    FileSystem& files_;
    QString path_;
    std::shared_ptr<Writer> writer_; // shared with the background work under way
};

} // namespace amberquill
