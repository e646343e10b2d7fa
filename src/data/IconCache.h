#pragma once

#include "data/CacheFiles.h"
#include "platform/MainQueue.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <map>
#include <vector>

namespace amberquill {

class ApplicationIcons;

// The application icons of this process. Each is decoded once per size, away from the main thread, and kept
// while there is room, even after its application is removed. Over the limit, the icons that were requested
// least recently are evicted; an image that other objects share stays, since evicting it would free nothing.
// Main thread only.
class IconCache final : public QObject {
    Q_OBJECT

public:
    // The limit of the evictable icons, in bytes: some more pages.
    static constexpr qsizetype usualLimit = qsizetype{24} * 1024 * 1024;

    // `ApplicationIcons::rest` is called after so many seconds without a request.
    static constexpr double restAfter = 4;

    explicit IconCache(qsizetype limit = usualLimit)
        : limit_(limit) {}

    static IconCache& shared();

    // Sets the source of the icons and empties the cache. Both objects outlive their use. Without a source,
    // every icon is the placeholder.
    void serveFrom(ApplicationIcons* source, MainQueue* queue);

    // The application's icon at `edge` × `edge` device pixels. Until it is decoded: the same icon at another
    // known size, to be scaled, or else the placeholder. For an application without an icon: the platform's
    // generic icon, or else a painted one. `arrived` reports each change.
    QImage icon(const QString& path, int edge);

    // The applications that are visible or may be next. The latest requested size of each is not evicted.
    void setNeeded(const QSet<QString>& paths);

    // Evicts all that can be evicted. For the hidden launcher.
    void shrink() { evictDownTo(0); }

    [[nodiscard]] qsizetype evictableBytes() const;

    // Whether the icon has been decoded, or the application is known to have none.
    [[nodiscard]] bool isKnown(const QString& path, int edge) const;

    // Whether no icon is being decoded.
    [[nodiscard]] bool isIdle() const { return decoding_.isEmpty() && decodingGeneric_.isEmpty(); }

    // Takes the icons of an earlier run. They count as decoded until `refreshRestored` decodes them anew;
    // `arrived` then reports those that look different. An icon that cannot be decoded now stays.
    void restore(const std::vector<StoredIcon>& icons);
    void refreshRestored();

    // The known icons of these applications at every edge, in order of path and edge.
    [[nodiscard]] std::vector<StoredIcon> snapshot(const QStringList& paths) const;

    // Requests missing icons again, since a package's icons are often installed after its application. The
    // generic icons are requested again too.
    void retryMissing();

    // The image for an icon that is being decoded.
    QImage placeholder(int edge);

Q_SIGNALS:
    void arrived(const QString& path, int edge);

private:
    struct Key {
        QString path;
        int edge = 0;

        bool operator==(const Key&) const = default;
    };
    friend size_t qHash(const Key& key, size_t seed = 0) noexcept {
        return qHashMulti(seed, key.path, key.edge);
    }

    struct Icon {
        QImage image; // null: the application has no icon
        quint64 used = 0;
    };

    [[nodiscard]] QImage bestKnown(const Key& key);
    [[nodiscard]] bool hasNoIcon(const QString& path) const;
    void request(const Key& key);
    void take(const Key& key, const QImage& image);

    [[nodiscard]] QImage genericIcon(int edge);
    void requestGeneric(int edge);
    void refreshGeneric();
    void takeGeneric(int edge, const QImage& image);

    void restWhenIdle();
    void put(const Key& key, const QImage& image);
    [[nodiscard]] std::vector<Key> evictable() const;
    [[nodiscard]] qsizetype bytesOf(const std::vector<Key>& keys) const;
    void makeRoom(qsizetype bytes);
    void evictDownTo(qsizetype limit);

    ApplicationIcons* source_ = nullptr;
    MainQueue* queue_ = nullptr;
    QHash<Key, Icon> cache_;
    std::map<int, int> edges_; // the number of icons of each edge; there are few edges
    QSet<QString> needed_;
    qsizetype limit_;
    qsizetype bytes_ = 0; // of all icons
    quint64 uses_ = 0;    // the number of requests so far
    QHash<int, QImage> placeholders_;
    QHash<int, QImage> genericIcons_; // by edge
    QSet<int> decodingGeneric_;
    QSet<Key> decoding_;
    QSet<Key> restored_; // not yet decoded in this run
    DelayedWork rest_;
    Context context_; // of the current source
};

} // namespace amberquill
