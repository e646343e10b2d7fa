#include "data/LaunchItem.h"

#include <algorithm>

namespace amberquill {

size_t qHash(const AppInfo& app, size_t seed) noexcept {
    return qHashMulti(seed, app.path, app.name);
}

size_t qHash(const Folder& folder, size_t seed) noexcept {
    const size_t head = qHashMulti(seed, folder.id, folder.name, folder.apps.size());
    return qHashRange(folder.apps.begin(), folder.apps.end(), head);
}

size_t qHash(const LaunchItem& item, size_t seed) noexcept {
    if (const QString* path = item.asApp()) {
        return qHashMulti(seed, 0, *path);
    }
    return qHashMulti(seed, 1, *item.asFolder());
}

QString canonicalText(const QUuid& id) {
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QString appItemId(const QString& path) {
    return QStringLiteral("a:") + path;
}

QString folderItemId(const QUuid& id) {
    return QStringLiteral("f:") + canonicalText(id);
}

QString LaunchItem::id() const {
    if (const QString* path = asApp()) {
        return appItemId(*path);
    }
    return folderItemId(asFolder()->id);
}

bool LaunchItem::hasId(const QString& id) const {
    if (const QString* path = asApp()) {
        return id.size() == path->size() + 2 && id.startsWith(QLatin1String("a:")) && id.endsWith(*path);
    }
    const QStringView text(id);
    return text.size() == 38 && text.startsWith(u"f:") &&
           QUuid::fromString(text.sliced(2)) == asFolder()->id &&
           std::none_of(text.begin() + 2, text.end(), [](QChar digit) { return digit.isLower(); });
}

QStringView lastPathComponent(const QString& path) {
    QStringView rest(path);
    while (rest.endsWith(QLatin1Char('/'))) {
        rest.chop(1);
    }
    return rest.mid(rest.lastIndexOf(QLatin1Char('/')) + 1);
}

QString nameFromPath(const QString& path) {
    const QStringView last = lastPathComponent(path);
    const qsizetype dot = last.lastIndexOf(QLatin1Char('.'));
    return (dot > 0 ? last.left(dot) : last).toString();
}

} // namespace amberquill
