#pragma once

#include "data/KeptIcons.h"
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

// The application icons of this process, decoded once per size and kept as long as there is room: pages that
// were seen not long ago are drawn without asking the platform again, and an application that is removed
// keeps its icon. Over its limit the cache lets go of the icons that were asked for longest ago, and decodes
// them anew when they are asked for again; what somebody else holds as well stays, since letting go of it
// would free nothing. Decoding happens away from the main thread; everything here is called on it.
class IconCache final : public QObject {
    Q_OBJECT

public:
    // What it may hold beside the needed ones, in bytes: some more pages.
    static constexpr qsizetype usualLimit = qsizetype{24} * 1024 * 1024;

    // Seconds without an icon under way after which `ApplicationIcons::rest` is called.
    static constexpr double restAfter = 4;

    explicit IconCache(qsizetype limit = usualLimit)
        : limit_(limit) {}

    static IconCache& shared();

    // Where icons come from; both outlive their use. Until this is called, every icon is the placeholder.
    void serveFrom(ApplicationIcons* source, MainQueue* queue);

    // The application's icon at `edge` × `edge` device pixels. Until it is decoded, the same icon of another
    // size that is known, to be scaled, or else the placeholder. For an application that has no icon, the
    // platform's stand-in for such ones, or else a drawn glyph. `arrived` follows when another takes its
    // place.
    QImage icon(const QString& path, int edge);

    // The applications that are shown or may be next. Of each, the image that was asked for last stays,
    // beside what the limit leaves room for.
    void setNeeded(const QSet<QString>& paths);

    // Lets go of all icons but those of needed applications and those that somebody else holds as well: for
    // when nobody looks.
    void shrink() { letGoOver(0); }

    // What the cache could let go of, in bytes.
    [[nodiscard]] qsizetype spareBytes() const;

    // Whether the icon has been decoded, or is known not to exist.
    [[nodiscard]] bool isKnown(const QString& path, int edge) const;

    // Whether no icon is being decoded.
    [[nodiscard]] bool isIdle() const { return underWay_.isEmpty() && standInsUnderWay_.isEmpty(); }

    // Icons of an earlier run, shown like any other until `refreshRemembered`.
    void remember(const std::vector<KeptIcon>& icons);
    // Decodes what was remembered again; `arrived` follows for what looks different now. What is not to be
    // had now stays.
    void refreshRemembered();

    // What is shown for those of these applications that have been decoded, or are known to have no icon: at
    // every edge, in order of path and edge.
    [[nodiscard]] std::vector<KeptIcon> pictures(const QStringList& paths) const;

    // Asks again for the icons that were not to be had: a package's icons often come after its application.
    // Meanwhile the remembered ones stay. What stands in for icons is asked for again as well.
    void retryMissing();

    // What is shown while an icon is decoded.
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
        QImage image; // null: known to have none
        quint64 used = 0;
    };

    [[nodiscard]] QImage meanwhile(const Key& key);
    [[nodiscard]] QImage standIn(int edge);
    [[nodiscard]] bool hasNone(const QString& path) const;
    void requestStandIn(int edge);
    void refreshStandIns();
    void takeStandIn(int edge, const QImage& image);
    void request(const Key& key);
    void take(const Key& key, const QImage& image);
    void restLater();
    void put(const Key& key, const QImage& image);
    [[nodiscard]] std::vector<Key> spare() const;
    [[nodiscard]] qsizetype bytesOf(const std::vector<Key>& keys) const;
    void makeRoom(qsizetype bytes);
    void letGoOver(qsizetype limit);

    ApplicationIcons* source_ = nullptr;
    MainQueue* queue_ = nullptr;
    QHash<Key, Icon> cache_;
    std::map<int, int> edges_; // how many icons are of each: few
    QSet<QString> needed_;
    qsizetype limit_;
    qsizetype bytes_ = 0; // of all
    quint64 uses_ = 0;    // of any icon, so far
    QHash<int, QImage> placeholders_;
    QHash<int, QImage> standIns_; // for applications without an icon, by edge
    QSet<int> standInsUnderWay_;
    QSet<Key> underWay_;
    DelayedWork rest_;     // waits while no icon is under way
    QSet<Key> remembered_; // still to be decoded
};

} // namespace amberquill
