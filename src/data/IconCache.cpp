#include "data/IconCache.h"

#include "data/PaintedIcons.h"
#include "platform/ApplicationIcons.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

namespace amberquill {

namespace {

// About the size of an entry without its image.
qsizetype entryBytes(const QString& path) {
    return 128 + path.size() * static_cast<qsizetype>(sizeof(QChar));
}

} // namespace

IconCache& IconCache::shared() {
    static IconCache theCache;
    return theCache;
}

void IconCache::serveFrom(ApplicationIcons* source, MainQueue* queue) {
    context_.reset();
    rest_.cancel();
    source_ = source;
    queue_ = queue;
    cache_.clear();
    edges_.clear();
    bytes_ = 0;
    decoding_.clear();
    genericIcons_.clear();
    decodingGeneric_.clear();
    restored_.clear();
}

QImage IconCache::icon(const QString& path, int edge) {
    const Key key{path, edge};
    const auto known = cache_.find(key);
    if (known != cache_.end()) {
        known->used = ++uses_;
        return known->image.isNull() ? genericIcon(edge) : known->image;
    }
    request(key);
    return bestKnown(key);
}

void IconCache::setNeeded(const QSet<QString>& paths) {
    needed_ = paths;
}

QImage IconCache::bestKnown(const Key& key) {
    QImage best;
    for (const auto& [edge, count] : edges_) {
        const QImage image = cache_.value({key.path, edge}).image;
        // The next larger size, or else the largest.
        if (!image.isNull() && best.width() < key.edge) {
            best = image;
        }
    }
    if (!best.isNull()) {
        return best;
    }
    return hasNoIcon(key.path) ? genericIcon(key.edge) : placeholder(key.edge);
}

// Whether the application is known, by a request at any edge, to have no icon.
bool IconCache::hasNoIcon(const QString& path) const {
    return std::any_of(edges_.begin(), edges_.end(), [&](const auto& each) {
        const auto known = cache_.constFind({path, each.first});
        return known != cache_.constEnd() && known->image.isNull();
    });
}

QImage IconCache::genericIcon(int edge) {
    const auto known = genericIcons_.constFind(edge);
    if (known != genericIcons_.constEnd()) {
        return *known;
    }
    requestGeneric(edge);
    return placeholder(edge);
}

void IconCache::requestGeneric(int edge) {
    if (source_ == nullptr || edge <= 0 || decodingGeneric_.contains(edge)) {
        return;
    }
    rest_.cancel();
    decodingGeneric_.insert(edge);
    queue_->compute(
        context_,
        [source = source_, edge] {
            const QImage image = source->genericIcon(edge);
            return image.isNull() ? paintedGenericIcon(edge) : image;
        },
        [this, edge](const QImage& image) {
            decodingGeneric_.remove(edge);
            takeGeneric(edge, image);
            restWhenIdle();
        },
        Lane::Icons);
}

void IconCache::refreshGeneric() {
    const QList<int> edges = genericIcons_.keys();
    for (const int edge : edges) {
        requestGeneric(edge);
    }
}

void IconCache::takeGeneric(int edge, const QImage& image) {
    if (genericIcons_.value(edge) == image) {
        return;
    }
    genericIcons_[edge] = image;
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

void IconCache::restore(const std::vector<StoredIcon>& icons) {
    for (const StoredIcon& icon : icons) {
        const Key key{icon.path, icon.image.width()};
        if (icon.isGeneric && !genericIcons_.contains(key.edge)) {
            genericIcons_[key.edge] = icon.image;
        }
        if (!cache_.contains(key)) {
            put(key, icon.isGeneric ? QImage() : icon.image);
            restored_.insert(key);
        }
    }
}

void IconCache::refreshRestored() {
    const QSet<Key> keys = std::exchange(restored_, {});
    for (const Key& key : keys) {
        request(key);
    }
    refreshGeneric();
}

std::vector<StoredIcon> IconCache::snapshot(const QStringList& paths) const {
    const QSet<QString> wanted(paths.begin(), paths.end());
    std::vector<StoredIcon> icons;
    for (auto entry = cache_.constKeyValueBegin(); entry != cache_.constKeyValueEnd(); ++entry) {
        const auto& [key, icon] = *entry;
        const bool isGeneric = icon.image.isNull();
        const QImage shown = isGeneric ? genericIcons_.value(key.edge) : icon.image;
        if (!shown.isNull() && wanted.contains(key.path)) {
            icons.push_back({key.path, shown, isGeneric});
        }
    }
    std::sort(icons.begin(), icons.end(), [](const StoredIcon& a, const StoredIcon& b) {
        return std::pair(a.path, a.image.width()) < std::pair(b.path, b.image.width());
    });
    return icons;
}

void IconCache::retryMissing() {
    QList<Key> missing(restored_.cbegin(), restored_.cend());
    for (auto entry = cache_.constKeyValueBegin(); entry != cache_.constKeyValueEnd(); ++entry) {
        if (entry->second.image.isNull()) {
            missing.append(entry->first);
        }
    }
    for (const Key& key : std::as_const(missing)) {
        request(key);
    }
    refreshGeneric();
}

void IconCache::request(const Key& key) {
    if (source_ == nullptr || key.edge <= 0 || decoding_.contains(key)) {
        return;
    }
    rest_.cancel();
    decoding_.insert(key);
    queue_->compute(
        context_, [source = source_, key] { return source->image(key.path, key.edge); },
        [this, key](const QImage& image) {
            decoding_.remove(key);
            take(key, image);
            restWhenIdle();
        },
        Lane::Icons);
}

void IconCache::take(const Key& key, const QImage& image) {
    const auto known = cache_.constFind(key);
    const bool isNew = known == cache_.constEnd();
    if (!isNew && image.isNull() && !known->image.isNull()) {
        // Its file is missing, perhaps for a moment. `retryMissing` requests it again.
        restored_.insert(key);
        return;
    }
    // An image that looks the same is not replaced: textures have been made of it.
    if (isNew || known->image != image) {
        makeRoom(entryBytes(key.path) + image.sizeInBytes());
        put(key, image);
        if (!image.isNull() || genericIcons_.contains(key.edge)) {
            Q_EMIT arrived(key.path, key.edge);
        } else {
            requestGeneric(key.edge);
        }
    }
}

void IconCache::restWhenIdle() {
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

// The least recently requested one comes first.
std::vector<IconCache::Key> IconCache::evictable() const {
    QHash<QString, quint64> lastUse; // by needed application
    for (auto entry = cache_.constKeyValueBegin(); entry != cache_.constKeyValueEnd(); ++entry) {
        if (const QString& path = entry->first.path; needed_.contains(path)) {
            lastUse[path] = std::max(lastUse.value(path), entry->second.used);
        }
    }
    std::vector<std::pair<quint64, Key>> found;
    for (auto entry = cache_.constKeyValueBegin(); entry != cache_.constKeyValueEnd(); ++entry) {
        const auto& [key, icon] = *entry;
        const bool isShared = !icon.image.isNull() && !icon.image.isDetached();
        if (!isShared && lastUse.value(key.path) != icon.used) {
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

qsizetype IconCache::evictableBytes() const {
    return bytesOf(evictable());
}

void IconCache::makeRoom(qsizetype bytes) {
    if (bytes_ + bytes > limit_) {
        evictDownTo(limit_ - bytes);
    }
}

void IconCache::evictDownTo(qsizetype limit) {
    const std::vector<Key> keys = evictable();
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
