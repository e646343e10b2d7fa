// data/: the values the launcher is made of: layout items, what is installed, the geometry of pages, icons,
// themes.
#pragma once

#include <QHashFunctions>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <variant>
#include <vector>

namespace amberquill {

// An installed application as a scan finds it.
struct AppInfo {
    QString path; // as listed, links not resolved
    QString name; // as shown under the icon

    bool operator==(const AppInfo&) const = default;
};

size_t qHash(const AppInfo& app, size_t seed = 0) noexcept;

// A named group of applications. Its id is given once and kept through saves, exports and imports.
struct Folder {
    QUuid id;
    QString name;     // may be empty
    QStringList apps; // paths, in the order shown

    bool operator==(const Folder&) const = default;
};

size_t qHash(const Folder& folder, size_t seed = 0) noexcept;

// The UUID in its canonical text: 36 characters, upper case, no braces.
QString canonicalText(const QUuid& id);

// One place in the layout: an application by its path, or a folder.
class LaunchItem {
public:
    static LaunchItem app(QString path) { return LaunchItem(std::move(path)); }
    static LaunchItem folder(Folder folder) { return LaunchItem(std::move(folder)); }

    [[nodiscard]] bool isFolder() const { return std::holds_alternative<Folder>(payload_); }

    // The application's path; null when this is a folder.
    [[nodiscard]] const QString* asApp() const { return std::get_if<QString>(&payload_); }

    // The folder; null when this is an application.
    [[nodiscard]] const Folder* asFolder() const { return std::get_if<Folder>(&payload_); }

    // The identity under which the item is drawn, hit and dragged: "a:" and the path, or "f:" and the
    // folder's UUID. It survives rescans.
    [[nodiscard]] QString id() const;

    // Whether this is the item of that identity, without making a text of its own for an application.
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

// The identity of the item for the application at `path`, and of the folder of this id.
QString appItemId(const QString& path);
QString folderItemId(const QUuid& id);

// The last component of a path, without the slashes that the path may end with.
QStringView lastPathComponent(const QString& path);

// The name to show for a path of which nothing else is known: its last component without the extension.
QString nameFromPath(const QString& path);

} // namespace amberquill
