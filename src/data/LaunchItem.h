// data/: the launcher's values (layout items, installed applications, page geometry, icons, themes) and their
// files.
#pragma once

#include <QHashFunctions>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <variant>
#include <vector>

namespace amberquill {

// An installed application, as a scan found it.
struct AppInfo {
    QString path; // links are not resolved
    QString name; // the label under the icon

    bool operator==(const AppInfo&) const = default;
};

size_t qHash(const AppInfo& app, size_t seed = 0) noexcept;

// A named group of applications. Its id never changes, not even by an export and import.
struct Folder {
    QUuid id;
    QString name;     // may be empty
    QStringList apps; // paths, in the order shown

    bool operator==(const Folder&) const = default;
};

size_t qHash(const Folder& folder, size_t seed = 0) noexcept;

// The UUID in its canonical text: 36 characters, upper case, no braces.
QString canonicalText(const QUuid& id);

// An item of the layout: an application, referred to by its path, or a folder.
class LaunchItem {
public:
    static LaunchItem app(QString path) { return LaunchItem(std::move(path)); }
    static LaunchItem folder(Folder folder) { return LaunchItem(std::move(folder)); }

    [[nodiscard]] bool isFolder() const { return std::holds_alternative<Folder>(payload_); }

    // The application's path; null when this is a folder.
    [[nodiscard]] const QString* asApp() const { return std::get_if<QString>(&payload_); }

    // The folder; null when this is an application.
    [[nodiscard]] const Folder* asFolder() const { return std::get_if<Folder>(&payload_); }

    // The id of the item for views and pointer events: "a:" and the path, or "f:" and the folder's UUID. It
    // stays the same after a scan.
    [[nodiscard]] QString id() const;

    // Whether `id()` is this id. Makes no new text: each move of the pointer asks.
    [[nodiscard]] bool hasId(const QString& id) const;

    bool operator==(const LaunchItem&) const = default;

private:
    explicit LaunchItem(QString path)
        : payload_(std::move(path)) {}
    explicit LaunchItem(Folder folder)
        : payload_(std::move(folder)) {}

    std::variant<QString, Folder> payload_;
};

size_t qHash(const LaunchItem& item, size_t seed = 0) noexcept;

using LaunchItems = std::vector<LaunchItem>;

// The ids of the items for an application and for a folder.
QString appItemId(const QString& path);
QString folderItemId(const QUuid& id);

// The last component of a path, without trailing slashes.
QStringView lastPathComponent(const QString& path);

// A name made of the path alone: its last component without the extension.
QString nameFromPath(const QString& path);

} // namespace amberquill
