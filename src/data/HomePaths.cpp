#include "data/HomePaths.h"

namespace amberquill {

namespace {

// Longer than any user name.
constexpr qsizetype longestUserName = 256;

} // namespace

QString homeRelative(const QString& path, const QString& home) {
    const bool isBelow = !home.isEmpty() && path.startsWith(home) && path.size() > home.size() &&
                         path[home.size()] == QLatin1Char('/');
    return isBelow ? QLatin1Char('~') + path.mid(home.size()) : path;
}

QString TildeExpansion::expand(const QString& path) {
    if (!path.startsWith(QLatin1Char('~'))) {
        return path;
    }
    const qsizetype slash = path.indexOf(QLatin1Char('/'));
    const qsizetype end = slash < 0 ? path.size() : slash;
    const auto home = homeOf(path.mid(1, end - 1));
    if (!home) {
        return path;
    }
    // "/" already ends with the next slash.
    return *home == QLatin1String("/") && slash >= 0 ? path.mid(end) : *home + path.mid(end);
}

std::optional<QString> TildeExpansion::homeOf(const QString& user) {
    if (user.isEmpty()) {
        return homes_.own.isEmpty() ? std::nullopt : std::optional(homes_.own);
    }
    if (const auto known = known_.constFind(user); known != known_.constEnd()) {
        return *known;
    }
    if (user.size() > longestUserName || known_.size() >= mostUsers) {
        return std::nullopt;
    }
    return *known_.insert(user, homes_.of(user));
}

} // namespace amberquill
