#pragma once

#include <QHash>
#include <QString>
#include <functional>
#include <optional>

namespace amberquill {

// Where users are at home. Absolute folders without a trailing slash.
struct HomeFolders {
    QString own; // empty: not known

    // Another user's, by name; none when there is no such user. May ask a server.
    std::function<std::optional<QString>(const QString& user)> of = [](const QString&) {
        return std::nullopt;
    };
};

// A path below `home` as "~/…"; any other as it is.
QString homeRelative(const QString& path, const QString& home);

// Turns a leading "~" or "~user" into the home folder it stands for; paths without one, and of users who are
// not known, stay as they are. For the many paths of one file: each user is looked up once, and no more than
// `mostUsers` of them.
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
