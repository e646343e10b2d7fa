#include "data/LaunchItem.h"

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

QString LaunchItem::id() const {
    if (const QString* path = asApp()) {
        return appItemId(*path);
    }
    return QStringLiteral("f:") + canonicalText(asFolder()->id);
}

bool LaunchItem::hasId(const QString& id) const {
    if (const QString* path = asApp()) {
        return id.size() == path->size() + 2 && id.startsWith(QLatin1String("a:")) && id.endsWith(*path);
    }
    return id.startsWith(QLatin1String("f:")) && id == this->id();
}

QString nameFromPath(const QString& path) {
    const QString last = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    const qsizetype dot = last.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? last.left(dot) : last;
}

} // namespace amberquill
