#pragma once

#include "platform/FileSystem.h"

#include <QHash>
#include <QMap>
#include <QSet>
#include <algorithm>

namespace amberquill {

// Files and folders in memory, listed in the order of their creation.
class MemoryFileSystem : public FileSystem {
public:
    using FileSystem::listFolder;
    using FileSystem::readFile;
    using FileSystem::writeAtomically;

    void addFolder(const QString& path) { addEntry(path, true); }
    void addFile(const QString& path, const QByteArray& content = {}) {
        addEntry(path, false);
        files_.insert(path, content);
    }
    void addLink(const QString& path, const QString& target) {
        addEntry(path, false);
        links_.insert(path, target);
    }
    void makeUnreadable(const QString& path) { unreadable_.insert(path); }
    void setDisplayName(const QString& path, const QString& name) { names_.insert(path, name); }
    void refuseWrites(bool refuse) { refuseWrites_ = refuse; }
    // Refuses all writes after the next `count`.
    void failWritesAfter(int count) { writesLeft_ = count; }
    void refuseSettingAside(bool refuse) { refuseSettingAside_ = refuse; }

    [[nodiscard]] std::optional<QByteArray> file(const QString& path) const {
        const auto found = files_.constFind(path);
        return found == files_.constEnd() ? std::nullopt : std::optional(*found);
    }
    [[nodiscard]] QStringList paths() const { return files_.keys(); }
    [[nodiscard]] bool isReadableByOthers(const QString& path) const {
        return readableByOthers_.contains(path);
    }
    [[nodiscard]] int writes() const { return writes_; }
    [[nodiscard]] int writesOf(const QString& path) const { return writesOf_.value(path); }
    [[nodiscard]] int refusedWrites() const { return refusedWrites_; }

    [[nodiscard]] std::optional<std::vector<FolderEntry>> listFolder(const QString& path,
                                                                     std::error_code& error) const override {
        if (unreadable_.contains(path)) {
            error = std::make_error_code(std::errc::permission_denied);
        } else if (!folders_.contains(path)) {
            error = std::make_error_code(std::errc::no_such_file_or_directory);
        } else {
            return folders_.value(path);
        }
        return std::nullopt;
    }

    [[nodiscard]] QString resolvingSymbolicLinks(const QString& path) const override {
        return links_.value(path, path);
    }

    [[nodiscard]] QString displayName(const QString& path) const override {
        return names_.value(path, path.section(QLatin1Char('/'), -1));
    }

    [[nodiscard]] std::optional<QByteArray> readFile(const QString& path, qint64 limit,
                                                     std::error_code& error) const override {
        const auto content = file(path);
        if (!content) {
            error = std::make_error_code(std::errc::no_such_file_or_directory);
        } else if (unreadable_.contains(path)) {
            error = std::make_error_code(std::errc::permission_denied);
        } else if (content->size() > limit) {
            error = std::make_error_code(std::errc::file_too_large);
        } else {
            return content;
        }
        return std::nullopt;
    }

    [[nodiscard]] FileKind kind(const QString& path) const override {
        if (files_.contains(path)) {
            return FileKind::Regular;
        }
        return folders_.contains(path) ? FileKind::Other : FileKind::Missing;
    }

    [[nodiscard]] std::optional<qint64> fileSize(const QString& path) const override {
        const auto content = file(path);
        return content ? std::optional<qint64>(content->size()) : std::nullopt;
    }

    bool writeAtomically(const QString& path, const QByteArray& content, NewFile newFile,
                         std::error_code& error) override {
        if (folders_.contains(path)) {
            error = std::make_error_code(std::errc::is_a_directory);
            return false;
        }
        if (refuseWrites_ || (writesLeft_ && --*writesLeft_ < 0)) {
            ++refusedWrites_;
            error = std::make_error_code(std::errc::no_space_on_device);
            return false;
        }
        ++writes_;
        ++writesOf_[path];
        if (newFile == NewFile::ByUmask) {
            readableByOthers_.insert(path);
        }
        addFile(path, content);
        return true;
    }

    bool setAside(const QString& path) override {
        if (refuseSettingAside_ || !files_.contains(path)) {
            return false;
        }
        addFile(path + QStringLiteral(".unreadable-1"), *file(path));
        removeFile(path);
        return true;
    }

    bool remove(const QString& path) override { return !refuseWrites_ && removeFile(path); }

private:
    void addEntry(const QString& path, bool isDirectory) {
        const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
        const QString parent = path.left(slash);
        if (!parent.isEmpty() && !folders_.contains(parent)) {
            addEntry(parent, true);
        }
        const QString name = path.mid(slash + 1);
        auto& entries = folders_[parent];
        if (std::none_of(entries.begin(), entries.end(),
                         [&](const auto& entry) { return entry.name == name; })) {
            entries.push_back({name, isDirectory});
        }
        if (isDirectory) {
            folders_[path];
        }
    }

    bool removeFile(const QString& path) {
        const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
        const auto folder = folders_.find(path.left(slash));
        if (folder == folders_.end()) {
            return false;
        }
        std::erase_if(*folder,
                      [name = path.mid(slash + 1)](const auto& entry) { return entry.name == name; });
        return files_.remove(path) > 0;
    }

    QHash<QString, std::vector<FolderEntry>> folders_;
    QMap<QString, QByteArray> files_;
    QHash<QString, QString> links_;
    QHash<QString, QString> names_;
    QSet<QString> unreadable_;
    QSet<QString> readableByOthers_;
    bool refuseWrites_ = false;
    std::optional<int> writesLeft_;
    bool refuseSettingAside_ = false;
    int writes_ = 0;
    QHash<QString, int> writesOf_;
    int refusedWrites_ = 0;
};

} // namespace amberquill
