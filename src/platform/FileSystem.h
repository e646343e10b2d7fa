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
    ByUmask, // whom the user's umask lets
};

// What a path leads to when symbolic links are followed. A link to nothing is missing. Unknown: it cannot be
// told, as where a folder on the way may not be entered.
enum class FileKind { Missing, Regular, Other, Unknown };

// Files and folders. Paths are absolute. Every operation is safe on any thread and answers "none" or false on
// failure. What takes an `error` says there why it failed, and leaves it alone otherwise.
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

    // The path with every symbolic link resolved; the path itself where that cannot be done.
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

    // Replaces the file's content as one step: a reader, or a crash, sees the old content or the new one,
    // never a part. Missing folders are made. A symbolic link stays one: what it points to is replaced. A
    // file that is there keeps its mode.
    virtual bool writeAtomically(const QString& path, const QByteArray& content, NewFile newFile,
                                 std::error_code& error) = 0;
    bool writeAtomically(const QString& path, const QByteArray& content) {
        std::error_code ignored;
        return writeAtomically(path, content, NewFile::UserOnly, ignored);
    }

    // Renames a regular file to a free name beside it, so that a new one can take its place and nothing is
    // lost. Anything else stays where it is.
    virtual bool setAside(const QString& path) = 0;

    // Removes a file; of a symbolic link the link itself.
    virtual bool remove(const QString& path) = 0;
};

// A desktop without files: nothing to list, nothing to read, nowhere to write.
class NullFileSystem final : public FileSystem {
public:
    using FileSystem::listFolder;
    using FileSystem::readFile;
    using FileSystem::writeAtomically;

    [[nodiscard]] std::optional<std::vector<FolderEntry>> listFolder(const QString&,
                                                                     std::error_code& error) const override {
        error = std::make_error_code(std::errc::no_such_file_or_directory);
        return std::nullopt;
    }
    [[nodiscard]] QString resolvingSymbolicLinks(const QString& path) const override { return path; }
    [[nodiscard]] QString displayName(const QString& path) const override {
        return path.section(QLatin1Char('/'), -1);
    }
    [[nodiscard]] std::optional<QByteArray> readFile(const QString&, qint64,
                                                     std::error_code& error) const override {
        error = std::make_error_code(std::errc::no_such_file_or_directory);
        return std::nullopt;
    }
    [[nodiscard]] FileKind kind(const QString&) const override { return FileKind::Missing; }
    [[nodiscard]] std::optional<qint64> fileSize(const QString&) const override { return std::nullopt; }
    bool writeAtomically(const QString&, const QByteArray&, NewFile, std::error_code& error) override {
        error = std::make_error_code(std::errc::no_such_file_or_directory);
        return false;
    }
    bool setAside(const QString&) override { return false; }
    bool remove(const QString&) override { return false; }
};

} // namespace amberquill
