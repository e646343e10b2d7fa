#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QByteArrayList>
#include <ctime>
#include <functional>
#include <set>
#include <sys/types.h>
#include <unordered_map>
#include <vector>

// Which folders have to be watched so that nothing below some roots changes unseen.
namespace amberquill::desktop {

inline constexpr int maximumWatchDepth = 5;            // levels below a root
inline constexpr std::size_t maximumWatches = 2048;    // folders in all; those near a root come first
inline constexpr int maximumLinksOnTheWayToARoot = 40; // as many as the system itself follows

// What a change in one watched folder means.
struct WatchedFolder {
    bool belowRoot = false;       // a root, or below one: every change counts
    std::set<QByteArray> awaited; // names in it that lead to a root: their coming and going moves that root
};

// Which folder a root is: the same one after a walk, or another that took its place. Zeros: not there.
struct FolderIdentity {
    dev_t device = 0;
    ino_t number = 0;

    bool operator==(const FolderIdentity&) const = default;
};

struct WatchedFolders {
    std::unordered_map<int, WatchedFolder> byWatch; // inotify's watch descriptors
    std::vector<FolderIdentity> roots;              // in the order of the roots asked for
    bool modifiedMeanwhile = false;                 // a folder's list of names changed after `since`
};

// Adds the watches to `inotify` and says what they are for. Each watch is there before its folder is listed,
// so a sub-folder that comes in between is either listed or told of. A root that is missing is awaited in
// the nearest folder on its way that exists; a symbolic link on its way is followed and watched for being
// replaced. Links below a root are not followed. `since` is in the system's time. Any thread.
// Empty roots are left out.
[[nodiscard]] WatchedFolders watchFolders(const FileDescriptor& inotify, const QByteArrayList& roots,
                                          timespec since);

// Goes the way of such a walk to one root and below it without watching anything, and calls `goOn` at each
// folder: it ends if a walk would.
void visitFolders(const QByteArray& root, const std::function<void()>& goOn);

} // namespace amberquill::desktop
