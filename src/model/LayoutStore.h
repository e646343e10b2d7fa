#pragma once

#include "data/LaunchItem.h"
#include "data/PlaceMemory.h"
#include "platform/FileSystem.h"
#include "platform/common/WriteBehind.h"

#include <QByteArray>
#include <QString>
#include <optional>
#include <vector>

namespace amberquill {

// What the private layout file and the file of places beside it held when they were read.
struct StoredLayout {
    QByteArray content;
    std::optional<LaunchItems> items; // none: no file, or one that does not decode
    QByteArray placesContent;
    std::optional<std::vector<RememberedItem>> places; // the same
};

// The private layout file, and beside it the places of applications that are gone from it. Nothing is ever
// reported: what cannot be read is an empty layout, what cannot be written stays in memory and is tried again
// (WriteBehind). Main thread only; the writing itself happens away from it.
class LayoutStore {
public:
    // `folder` is where applications keep what the user would miss; both services outlive the store.
    LayoutStore(MainQueue& queue, FileSystem& files, const QString& folder);

    // Reads the files. Safe on any thread, and for a layout of thousands worth one of its own.
    [[nodiscard]] static StoredLayout read(const FileSystem& files, const QString& folder);

    // The layout to start with, and what the file is known to hold from now on.
    [[nodiscard]] LaunchItems start(StoredLayout stored);

    [[nodiscard]] LaunchItems load() { return start(read(files_, folder_)); }

    // The places that belong to that layout.
    [[nodiscard]] std::vector<RememberedItem> takePlaces() { return std::exchange(places_, {}); }

    // Writes the places. Where a layout is saved next, they are on the disk before it: a process may end at
    // any time.
    void savePlaces(const std::vector<RememberedItem>& places);

    // Writes the layout, unless it is what the file holds already. Answers the text that this changes; none
    // where there was no layout before, or the same.
    std::optional<QByteArray> save(const LaunchItems& items);

    // Writes soon what could not be written before.
    void tryAgain() {
        placesFile_.tryAgain();
        file_.tryAgain();
    }

    // Returns when the last save is on the disk, or has failed.
    void flush() {
        placesFile_.flush();
        file_.flush();
    }

private:
    FileSystem& files_;
    QString folder_;
    WriteBehind placesFile_;
    WriteBehind file_;
    std::vector<RememberedItem> places_; // as read
    std::optional<QByteArray> text_;     // of the layout read or saved last
};

} // namespace amberquill
