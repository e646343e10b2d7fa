#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <system_error>
#include <vector>

namespace amberquill {

struct FolderEntry {
    QString name;
    bool isDirectory = false; // a real directory; a symbolic link to one is not
};

// Who may read a file that did not exist before.
enum class NewFile {
    UserOnly,
    ByUmask, // everybody that the user's umask allows
};

// The kind of file that a path leads to when symbolic links are followed. A dangling link is missing.
// Unknown: it cannot be found out, for instance because a folder of the path may not be entered.
enum class FileKind { Missing, Regular, Other, Unknown };

// Files and folders. Paths are absolute. Every operation is safe on any thread and answers "none" or false on
// failure. Operations with an `error` parameter set it on failure, and only then.
class FileSystem {
public:
    FileSystem() = default;
    FileSystem(const FileSystem&) = delete;
    FileSystem& operator=(const FileSystem&) = delete;
    virtual ~FileSystem() = default;

    // The immediate children of a folder without the hidden ones, in the platform's listing order.
    [[nodiscard]] virtual std::optional<std::vector<FolderEntry>>
    listFolder(const QString& path, std::error_code& error) const = 0;
    [[nodiscard]] std::optional<std::vector<FolderEntry>> listFolder(const QString& path) const {
        std::error_code ignored;
        return listFolder(path, ignored);
    }

    // The path with every symbolic link resolved, or the path itself on failure.
    [[nodiscard]] virtual QString resolvingSymbolicLinks(const QString& path) const = 0;

    // The name to show a person for the file at `path`.
    [[nodiscard]] virtual QString displayName(const QString& path) const = 0;

    // The whole of a regular file, or none: missing, unreadable, not a regular file, or larger than `limit`
    // bytes.
    [[nodiscard]] virtual std::optional<QByteArray> readFile(const QString& path, qint64 limit,
                                                             std::error_code& error) const = 0;
    [[nodiscard]] std::optional<QByteArray> readFile(const QString& path, qint64 limit) const {
        std::error_code ignored;
        return readFile(path, limit, ignored);
    }

    [[nodiscard]] virtual FileKind kind(const QString& path) const = 0;

    // The size of a regular file, in bytes.
    [[nodiscard]] virtual std::optional<qint64> fileSize(const QString& path) const = 0;

    // Replaces the file's content in one step: after a crash, and for readers, the file holds the old content
    // or the new one, never a part. Creates missing folders. A symbolic link stays one: its target is
    // replaced. An existing file keeps its mode.
    virtual bool writeAtomically(const QString& path, const QByteArray& content, NewFile newFile,
                                 std::error_code& error) = 0;
    bool writeAtomically(const QString& path, const QByteArray& content) {
        std::error_code ignored;
        return writeAtomically(path, content, NewFile::UserOnly, ignored);
    }

    // Renames a regular file to a free name in the same folder, so that a new one can take its place. Other
    // kinds of file stay where they are.
    virtual bool setAside(const QString& path) = 0;

    // Removes a file; of a symbolic link the link itself.
    virtual bool remove(const QString& path) = 0;
};

} // namespace amberquill
