#pragma once

#include <QStringList>
#include <system_error>

namespace amberquill {

// The folders that a scan went through, and how it found them. An application below a folder that could not
// be read may be there all the same. Absolute paths without a slash at the end.
struct ScannedFolders {
    QStringList roots;      // where the search began, in its order
    QStringList missing;    // of the roots, those that are not there
    QStringList unreadable; // roots, and folders below them, that were not read to their end

    // Notes a root of which nothing is known, since it does not answer.
    void noteGivenUp(const QString& root) {
        roots.append(root);
        unreadable.append(root);
    }

    void append(const ScannedFolders& others) {
        roots += others.roots;
        missing += others.missing;
        unreadable += others.unreadable;
    }

    // Notes why `folder` was not read. One below a root that is gone has gone with what was in it.
    void noteFailure(const QString& folder, std::error_code error, bool isRoot) {
        if (error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory) {
            unreadable.append(folder);
        } else if (isRoot) {
            missing.append(folder);
        }
    }
};

} // namespace amberquill
