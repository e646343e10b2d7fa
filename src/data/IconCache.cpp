#include "data/IconCache.h"

#include "data/ContinuousCorners.h"
#include "platform/ApplicationIcons.h"
#include "platform/MainQueue.h"

#include <QPainter>
#include <algorithm>
#include <utility>

namespace amberquill {

namespace {

QImage paintedPlaceholder(int edge) {
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double inset = edge * 0.09;
    const QRectF body = QRectF(0, 0, edge, edge).adjusted(inset, inset, -inset, -inset);
    painter.fillPath(continuousRoundedRect(body, body.width() * 0.225), QColor(255, 255, 255, 41));
    return image;
}

} // namespace

IconCache& IconCache::shared() {
    static IconCache theCache;
    return theCache;
}

void IconCache::serveFrom(const ApplicationIcons* source, MainQueue* queue) {
    source_ = source;
    queue_ = queue;
    cache_.clear();
    underWay_.clear();
    remembered_.clear();
}

QImage IconCache::icon(const QString& path, int edge) {
    const Key key{path, edge};
    const auto known = cache_.constFind(key);
    if (known != cache_.constEnd() && !known->isNull()) {
        return *known;
    }
    if (known != cache_.constEnd()) {
        return placeholder(edge);
    }
    request(key);
    return standIn(key);
}

QImage IconCache::standIn(const Key& key) {
    QImage best;
    for (const int edge : edges_) {
        const QImage image = cache_.value({key.path, edge});
        // The next larger one, or else the largest.
        if (!image.isNull() && best.width() < key.edge) {
            best = image;
        }
    }
    return best.isNull() ? placeholder(key.edge) : best;
}

bool IconCache::isKnown(const QString& path, int edge) const {
    return cache_.contains({path, edge});
}

void IconCache::remember(const std::vector<KeptIcon>& icons) {
    for (const KeptIcon& icon : icons) {
        const Key key{icon.path, icon.image.width()};
        if (!cache_.contains(key)) {
            cache_.insert(key, icon.image);
            edges_.insert(key.edge);
            remembered_.insert(key);
        }
    }
}

void IconCache::refreshRemembered() {
    const QSet<Key> keys = std::exchange(remembered_, {});
    for (const Key& key : keys) {
        request(key);
    }
}

std::vector<KeptIcon> IconCache::decoded(const QStringList& paths) const {
    const QSet<QString> wanted(paths.begin(), paths.end());
    std::vector<KeptIcon> icons;
    for (auto entry = cache_.constKeyValueBegin(); entry != cache_.constKeyValueEnd(); ++entry) {
        const auto& [key, image] = *entry;
        if (!image.isNull() && wanted.contains(key.path)) {
            icons.push_back({key.path, image});
        }
    }
    std::sort(icons.begin(), icons.end(), [](const KeptIcon& a, const KeptIcon& b) {
        return std::pair(a.path, a.image.width()) < std::pair(b.path, b.image.width());
    });
    return icons;
}

void IconCache::retryMissing() {
    QList<Key> missing(remembered_.cbegin(), remembered_.cend());
    for (auto entry = cache_.constKeyValueBegin(); entry != cache_.constKeyValueEnd(); ++entry) {
        if (entry->second.isNull()) {
            missing.append(entry->first);
        }
    }
    for (const Key& key : std::as_const(missing)) {
        request(key);
    }
}

void IconCache::request(const Key& key) {
    if (source_ == nullptr || key.edge <= 0 || underWay_.contains(key)) {
        return;
    }
    underWay_.insert(key);
    const ApplicationIcons* source = source_;
    queue_->compute([source, key] { return source->image(key.path, key.edge); },
                    [this, source, key](const QImage& image) {
                        if (source == source_) {
                            take(key, image);
                        }
                    },
                    Lane::Icons);
}

void IconCache::take(const Key& key, const QImage& image) {
    underWay_.remove(key);
    const auto known = cache_.constFind(key);
    const bool isNew = known == cache_.constEnd();
    if (!isNew && image.isNull() && !known->isNull()) {
        // Its file is away for now, as applications are at times. It is asked for again with the missing
        // ones.
        remembered_.insert(key);
        return;
    }
    // What looks the same stays, with all that was made of it.
    if (isNew || *known != image) {
        cache_.insert(key, image);
        edges_.insert(key.edge);
        if (!isNew || !image.isNull()) {
            Q_EMIT arrived(key.path, key.edge);
        }
    }
}

QImage IconCache::placeholder(int edge) {
    QImage& image = placeholders_[edge];
    if (image.isNull() && edge > 0) {
        image = paintedPlaceholder(edge);
    }
    return image;
}

} // namespace amberquill
