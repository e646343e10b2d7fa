#include "data/IconCache.h"

#include "data/ContinuousCorners.h"
#include "data/IconGlyph.h"
#include "platform/ApplicationIcons.h"

#include <QPainter>
#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

namespace amberquill {

namespace {

// About what an entry takes beside its image.
qsizetype entryBytes(const QString& path) {
    return 128 + path.size() * static_cast<qsizetype>(sizeof(QChar));
}

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

void IconCache::serveFrom(ApplicationIcons* source, MainQueue* queue) {
    rest_.cancel();
    source_ = source;
    queue_ = queue;
    cache_.clear();
    edges_.clear();
    bytes_ = 0;
    underWay_.clear();
    standIns_.clear();
    standInsUnderWay_.clear();
    remembered_.clear();
}

QImage IconCache::icon(const QString& path, int edge) {
    const Key key{path, edge};
    const auto known = cache_.find(key);
    if (known != cache_.end()) {
        known->used = ++uses_;
        return known->image.isNull() ? standIn(edge) : known->image;
    }
    request(key);
    return meanwhile(key);
}

void IconCache::setNeeded(const QSet<QString>& paths) {
    needed_ = paths;
}

QImage IconCache::meanwhile(const Key& key) {
    QImage best;
    for (const auto& [edge, count] : edges_) {
        const QImage image = cache_.value({key.path, edge}).image;
        // The next larger one, or else the largest.
        if (!image.isNull() && best.width() < key.edge) {
            best = image;
        }
    }
    if (!best.isNull()) {
        return best;
    }
    return hasNone(key.path) ? standIn(key.edge) : placeholder(key.edge);
}

// Whether the application is known, at some edge, to have no icon.
bool IconCache::hasNone(const QString& path) const {
    return std::any_of(edges_.begin(), edges_.end(), [&](const auto& each) {
        const auto known = cache_.constFind({path, each.first});
        return known != cache_.constEnd() && known->image.isNull();
    });
}

QImage IconCache::standIn(int edge) {
    const auto known = standIns_.constFind(edge);
    if (known != standIns_.constEnd()) {
        return *known;
    }
    requestStandIn(edge);
    return placeholder(edge);
}

void IconCache::requestStandIn(int edge) {
    if (source_ == nullptr || edge <= 0 || standInsUnderWay_.contains(edge)) {
        return;
    }
    rest_.cancel();
    standInsUnderWay_.insert(edge);
    const ApplicationIcons* source = source_;
    queue_->compute(
        [source, edge] {
            const QImage image = source->standIn(edge);
            return image.isNull() ? paintedIconGlyph(edge) : image;
        },
        [this, source, edge](const QImage& image) {
            if (source == source_) {
                standInsUnderWay_.remove(edge);
                takeStandIn(edge, image);
                restLater();
            }
        },
        Lane::Icons);
}

void IconCache::refreshStandIns() {
    const QList<int> edges = standIns_.keys();
    for (const int edge : edges) {
        requestStandIn(edge);
    }
}

void IconCache::takeStandIn(int edge, const QImage& image) {
    if (standIns_.value(edge) == image) {
        return;
    }
    standIns_[edge] = image;
    QStringList paths;
    for (auto entry = cache_.constKeyValueBegin(); entry != cache_.constKeyValueEnd(); ++entry) {
        if (const auto& [key, icon] = *entry; key.edge == edge && icon.image.isNull()) {
            paths += key.path;
        }
    }
    for (const QString& path : std::as_const(paths)) {
        Q_EMIT arrived(path, edge);
    }
}

bool IconCache::isKnown(const QString& path, int edge) const {
    return cache_.contains({path, edge});
}

void IconCache::remember(const std::vector<KeptIcon>& icons) {
    for (const KeptIcon& icon : icons) {
        const Key key{icon.path, icon.image.width()};
        if (icon.isStandIn && !standIns_.contains(key.edge)) {
            standIns_[key.edge] = icon.image;
        }
        if (!cache_.contains(key)) {
            put(key, icon.isStandIn ? QImage() : icon.image);
            remembered_.insert(key);
        }
    }
}

void IconCache::refreshRemembered() {
    const QSet<Key> keys = std::exchange(remembered_, {});
    for (const Key& key : keys) {
        request(key);
    }
    refreshStandIns();
}

std::vector<KeptIcon> IconCache::pictures(const QStringList& paths) const {
    const QSet<QString> wanted(paths.begin(), paths.end());
    std::vector<KeptIcon> icons;
    for (auto entry = cache_.constKeyValueBegin(); entry != cache_.constKeyValueEnd(); ++entry) {
        const auto& [key, icon] = *entry;
        const bool isStandIn = icon.image.isNull();
        const QImage shown = isStandIn ? standIns_.value(key.edge) : icon.image;
        if (!shown.isNull() && wanted.contains(key.path)) {
            icons.push_back({key.path, shown, isStandIn});
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
        if (entry->second.image.isNull()) {
            missing.append(entry->first);
        }
    }
    for (const Key& key : std::as_const(missing)) {
        request(key);
    }
    refreshStandIns();
}

void IconCache::request(const Key& key) {
    if (source_ == nullptr || key.edge <= 0 || underWay_.contains(key)) {
        return;
    }
    rest_.cancel();
    underWay_.insert(key);
    const ApplicationIcons* source = source_;
    queue_->compute([source, key] { return source->image(key.path, key.edge); },
                    [this, source, key](const QImage& image) {
                        if (source == source_) {
                            underWay_.remove(key);
                            take(key, image);
                            restLater();
                        }
                    },
                    Lane::Icons);
}

void IconCache::take(const Key& key, const QImage& image) {
    const auto known = cache_.constFind(key);
    const bool isNew = known == cache_.constEnd();
    if (!isNew && image.isNull() && !known->image.isNull()) {
        // Its file is away for now, as applications are at times. It is asked for again with the missing
        // ones.
        remembered_.insert(key);
        return;
    }
    // What looks the same stays, with all that was made of it.
    if (isNew || known->image != image) {
        makeRoom(entryBytes(key.path) + image.sizeInBytes());
        put(key, image);
        if (!image.isNull() || standIns_.contains(key.edge)) {
            Q_EMIT arrived(key.path, key.edge);
        } else {
            requestStandIn(key.edge);
        }
    }
}

void IconCache::restLater() {
    if (isIdle()) {
        rest_ = queue_->postAfter(restAfter, [this] {
            queue_->runInBackground([source = source_] { source->rest(); }, [] {}, Lane::Icons);
        });
    }
}

void IconCache::put(const Key& key, const QImage& image) {
    if (!cache_.contains(key)) {
        bytes_ += entryBytes(key.path);
        ++edges_[key.edge];
    }
    Icon& icon = cache_[key];
    bytes_ += image.sizeInBytes() - icon.image.sizeInBytes();
    icon = {image, ++uses_};
}

// Those that could be let go of, the one that was asked for longest ago first.
std::vector<IconCache::Key> IconCache::spare() const {
    QHash<QString, quint64> lastUse; // of needed applications
    for (auto entry = cache_.constKeyValueBegin(); entry != cache_.constKeyValueEnd(); ++entry) {
        if (const QString& path = entry->first.path; needed_.contains(path)) {
            lastUse[path] = std::max(lastUse.value(path), entry->second.used);
        }
    }
    std::vector<std::pair<quint64, Key>> found;
    for (auto entry = cache_.constKeyValueBegin(); entry != cache_.constKeyValueEnd(); ++entry) {
        const auto& [key, icon] = *entry;
        const bool isHeld = !icon.image.isNull() && !icon.image.isDetached();
        if (!isHeld && lastUse.value(key.path) != icon.used) {
            found.emplace_back(icon.used, key);
        }
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<Key> keys;
    std::transform(found.begin(), found.end(), std::back_inserter(keys),
                   [](const auto& each) { return each.second; });
    return keys;
}

qsizetype IconCache::bytesOf(const std::vector<Key>& keys) const {
    return std::accumulate(keys.begin(), keys.end(), qsizetype{0}, [this](qsizetype sum, const Key& key) {
        return sum + entryBytes(key.path) + cache_.value(key).image.sizeInBytes();
    });
}

qsizetype IconCache::spareBytes() const {
    return bytesOf(spare());
}

void IconCache::makeRoom(qsizetype bytes) {
    if (bytes_ + bytes > limit_) {
        letGoOver(limit_ - bytes);
    }
}

void IconCache::letGoOver(qsizetype limit) {
    const std::vector<Key> keys = spare();
    qsizetype rest = bytesOf(keys);
    for (auto key = keys.begin(); key != keys.end() && rest > limit; ++key) {
        const qsizetype bytes = entryBytes(key->path) + cache_.take(*key).image.sizeInBytes();
        rest -= bytes;
        bytes_ -= bytes;
        if (--edges_[key->edge] == 0) {
            edges_.erase(key->edge);
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
