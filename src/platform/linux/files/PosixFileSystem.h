// platform/linux/files/: reads and writes the disk by system calls, so that it never waits for a pipe, a
// device or a terminal, and knows each error.
//
// Parts, from the bottom:
// - FileDescriptor: owns a descriptor; bounded waits; process descriptors.
// - FolderReader lists a folder. RegularFile reads a file up to a limit. AtomicWriter replaces a file in one
//   step.
// - PosixFileSystem: the FileSystem built on these. JsonPreferences: the preferences file.
// - WatchWalk decides which folders need a watch; InotifyFolderWatcher watches them and reports changes.
//
// Rules: every read has a size limit. Symbolic links are followed for files, not below watched folders. Safe
// on any thread unless the class says otherwise. Log: amberquill.files.
#pragma once

#include "platform/FileSystem.h"

namespace amberquill::desktop {

// Files by system calls. Paths are UTF-8 on the disk in every locale. A name that is not UTF-8 cannot be
// written as text, so it is skipped.
//
// A folder is listed in byte order of its names. A name is hidden if it begins with a dot, or is a line of
// the folder's `.hidden` file.
class PosixFileSystem final : public FileSystem {
public:
    using FileSystem::listFolder;
    using FileSystem::readFile;
    using FileSystem::writeAtomically;

    [[nodiscard]] std::optional<std::vector<FolderEntry>> listFolder(const QString& path,
                                                                     std::error_code& error) const override;
    [[nodiscard]] QString resolvingSymbolicLinks(const QString& path) const override;
    [[nodiscard]] QString displayName(const QString& path) const override;
    [[nodiscard]] std::optional<QByteArray> readFile(const QString& path, qint64 limit,
                                                     std::error_code& error) const override;

    [[nodiscard]] FileKind kind(const QString& path) const override;
    [[nodiscard]] std::optional<qint64> fileSize(const QString& path) const override;

    // New files have the mode 0600, or 0666 without the umask's bits; new folders can be entered by the user
    // alone (0700).
    bool writeAtomically(const QString& path, const QByteArray& content, NewFile newFile,
                         std::error_code& error) override;

    // `layout.json` becomes `layout.json.unreadable-1`, or the next free number. If the path is a symbolic
    // link, its target is renamed.
    bool setAside(const QString& path) override;

    bool remove(const QString& path) override;
};

} // namespace amberquill::desktop
