#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QByteArrayList>
#include <ctime>
#include <functional>
#include <set>
#include <sys/types.h>
#include <unordered_map>
#include <vector>

// Finds the folders to watch so that every change below some roots is seen.
namespace amberquill::desktop {

inline constexpr int maximumWatchDepth = 5;            // levels below a root
inline constexpr std::size_t maximumWatches = 2048;    // folders in all; those near a root come first
inline constexpr int maximumLinksOnTheWayToARoot = 40; // as many as the kernel follows

// The meaning of a change in one watched folder.
struct WatchedFolder {
    bool belowRoot = false;       // a root, or below one: every change counts
    std::set<QByteArray> awaited; // names on a root's path: creating or removing one moves that root
};

// Tells whether a root is still the same folder after another walk. Zeros: it does not exist.
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

// Adds the watches to `inotify` and returns their meanings. Each folder is watched before it is listed, so a
// sub-folder created in between is either listed or reported. A missing root is awaited in the nearest
// existing folder of its path. Symbolic links in a root's path are followed and watched; links below a root
// are not followed. Empty roots are left out. `since` is in system time. Any thread.
[[nodiscard]] WatchedFolders watchFolders(const FileDescriptor& inotify, const QByteArrayList& roots,
                                          timespec since);

// Visits the same folders as such a walk for one root, without watching them, and calls `goOn` at each. Hangs
// exactly where a walk would.
void visitFolders(const QByteArray& root, const std::function<void()>& goOn);

} // namespace amberquill::desktop
