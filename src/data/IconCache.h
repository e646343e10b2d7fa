#pragma once

#include "data/KeptIcons.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <set>
#include <vector>

namespace amberquill {

class ApplicationIcons;
class MainQueue;

// The application icons of this process, each decoded once per size and kept: pages that were seen once are
// drawn without asking the platform again, and an application that is removed keeps its icon until the
// program ends. Decoding happens away from the main thread; everything here is called on it.
class IconCache final : public QObject {
    Q_OBJECT

public:
    static IconCache& shared();

    // Where icons come from; both outlive their use. Until this is called, every icon is the placeholder.
    void serveFrom(const ApplicationIcons* source, MainQueue* queue);

    // The application's icon at `edge` × `edge` device pixels. Until it is decoded, the same icon of another
    // size that is known, to be scaled; where there is none, and for an application that has no icon, the
    // placeholder. `arrived` follows when the real one takes its place.
    QImage icon(const QString& path, int edge);

    // Whether the icon has been decoded, or is known not to exist.
    [[nodiscard]] bool isKnown(const QString& path, int edge) const;

    // Whether no icon is being decoded.
    [[nodiscard]] bool isIdle() const { return underWay_.isEmpty(); }

    // Icons of an earlier run, shown like any other until `refreshRemembered`.
    void remember(const std::vector<KeptIcon>& icons);
    // Decodes what was remembered again; `arrived` follows for what looks different now. What is not to be
    // had now stays.
    void refreshRemembered();

    // The icons that were decoded for these applications, at every edge, in order of path and edge.
    [[nodiscard]] std::vector<KeptIcon> decoded(const QStringList& paths) const;

    // Asks again for the icons that were not to be had: a package's icons often come after its application.
    // Meanwhile the remembered ones stay.
    void retryMissing();

    // What stands in for an icon.
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

    [[nodiscard]] QImage standIn(const Key& key);
    void request(const Key& key);
    void take(const Key& key, const QImage& image);

    const ApplicationIcons* source_ = nullptr;
    MainQueue* queue_ = nullptr;
    QHash<Key, QImage> cache_; // null: known to have none
    std::set<int> edges_;      // that have been asked for: few
    QHash<int, QImage> placeholders_;
    QSet<Key> underWay_;
    QSet<Key> remembered_; // still to be decoded
};

} // namespace amberquill
