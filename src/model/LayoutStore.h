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

// The contents of the private layout file and of the file of places beside it.
struct StoredLayout {
    QByteArray content;
    std::optional<LaunchItems> items; // none: there is no file, or it does not decode
    QByteArray placesContent;
    std::optional<std::vector<RememberedItem>> places; // likewise
};

// The private layout file and, beside it, the places of applications that have left the layout. Errors are
// not reported: a file that cannot be read is an empty layout, a write that fails is repeated later
// (WriteBehind). Main thread only; the files are written in the background.
class LayoutStore {
public:
    // `folder` is the folder of the applications' data. Both services outlive the store.
    LayoutStore(MainQueue& queue, FileSystem& files, const QString& folder);

    // Reads the files. Any thread: a layout of thousands of items takes a while.
    [[nodiscard]] static StoredLayout read(const FileSystem& files, const QString& folder);

    // Takes what was read as the files' contents. Returns the layout.
    [[nodiscard]] LaunchItems start(StoredLayout stored);

    [[nodiscard]] LaunchItems load() { return start(read(files_, folder_)); }

    // The places read with the layout.
    [[nodiscard]] std::vector<RememberedItem> takePlaces() { return std::exchange(places_, {}); }

    // Writes the places. They reach the disk before a layout that is saved afterwards: the process may end
    // between the two.
    void savePlaces(const std::vector<RememberedItem>& places);

    // Writes the layout if it has changed. Returns the text that it replaces; none if there was no layout, or
    // the same one.
    std::optional<QByteArray> save(const LaunchItems& items);

    // Repeats failed writes soon.
    void tryAgain() {
        placesFile_.tryAgain();
        file_.tryAgain();
    }

    // Returns when the last save is on the disk or has failed.
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
    std::optional<QByteArray> text_;     // of the layout that was read or saved last
};

} // namespace amberquill
