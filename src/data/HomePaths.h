#pragma once

#include <QHash>
#include <QString>
#include <functional>
#include <optional>

namespace amberquill {

// Home folders: absolute paths without a trailing slash.
struct HomeFolders {
    QString own; // empty: unknown

    // Another user's home, by name. None: no such user. May query a server.
    std::function<std::optional<QString>(const QString& user)> of = [](const QString&) {
        return std::nullopt;
    };
};

// A path below `home` as "~/…". Other paths stay as they are.
QString homeRelative(const QString& path, const QString& home);

// Expands a leading "~" or "~user" to the home folder. Other paths, and those of unknown users, stay as they
// are. One object serves all paths of a file: it looks up each user once, and at most `mostUsers` of them.
class TildeExpansion {
public:
    static constexpr qsizetype mostUsers = 16;

    explicit TildeExpansion(const HomeFolders& homes)
        : homes_(homes) {}

    QString expand(const QString& path);

private:
    std::optional<QString> homeOf(const QString& user);

    const HomeFolders& homes_;
    QHash<QString, std::optional<QString>> known_;
};

} // namespace amberquill
