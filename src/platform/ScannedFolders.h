#pragma once

#include <QStringList>
#include <system_error>

namespace amberquill {

// The folders of a scan, and which of them could not be read: applications in those may still exist. Absolute
// paths without a slash at the end.
struct ScannedFolders {
    QStringList roots;      // where the search began, in the order of the search
    QStringList missing;    // roots that do not exist
    QStringList unreadable; // roots, and folders below them, that were not read completely

    // Notes a root that does not answer.
    void noteGivenUp(const QString& root) {
        roots.append(root);
        unreadable.append(root);
    }

    void append(const ScannedFolders& others) {
        roots += others.roots;
        missing += others.missing;
        unreadable += others.unreadable;
    }

    // Notes why `folder` was not read. A folder below a root that no longer exists is not noted: its
    // applications are gone as well.
    void noteFailure(const QString& folder, std::error_code error, bool isRoot) {
        if (error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory) {
            unreadable.append(folder);
        } else if (isRoot) {
            missing.append(folder);
        }
    }
};

} // namespace amberquill
