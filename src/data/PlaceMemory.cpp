#include "data/PlaceMemory.h"

#include <QSet>
#include <algorithm>
#include <list>
#include <utility>

namespace amberquill {

namespace {

const auto folderPrefix = QLatin1StringView("f:");

bool isFolderId(const QString& id) {
    return id.startsWith(folderPrefix);
}

QString pathOfId(const QString& appId) {
    return appId.sliced(2);
}

QStringList idsOf(const LaunchItems& items) {
    QStringList ids;
    ids.reserve(static_cast<qsizetype>(items.size()));
    for (const LaunchItem& item : items) {
        ids.append(item.id());
    }
    return ids;
}

QStringList idsOf(const QStringList& paths) {
    QStringList ids;
    ids.reserve(paths.size());
    for (const QString& path : paths) {
        ids.append(appItemId(path));
    }
    return ids;
}

// The paths of all applications, in the order of the layout.
QStringList pathsOf(const LaunchItems& items) {
    QStringList paths;
    for (const LaunchItem& item : items) {
        if (const QString* path = item.asApp()) {
            paths.append(*path);
        } else {
            paths += item.asFolder()->apps;
        }
    }
    return paths;
}

QSet<QString> setOf(const QStringList& texts) {
    return {texts.begin(), texts.end()};
}

// The remembered items by where they stood, each list in the order of the places.
struct RememberedByContainer {
    explicit RememberedByContainer(const std::vector<RememberedItem>& remembered) {
        for (const RememberedItem& item : remembered) {
            (item.folder ? folders[*item.folder] : pages).push_back(&item);
        }
    }

    std::vector<const RememberedItem*> pages;
    QHash<QUuid, std::vector<const RememberedItem*>> folders;
};

// A list with the remembered items in their places.
QStringList withRemembered(const QStringList& there, const std::vector<const RememberedItem*>& remembered) {
    std::list<QString> order(there.begin(), there.end());
    QHash<QString, std::list<QString>::iterator> places;
    for (auto place = order.begin(); place != order.end(); ++place) {
        places.insert(*place, place);
    }
    for (const RememberedItem* item : remembered) {
        if (places.contains(item->id)) {
            continue;
        }
        auto next = order.begin();
        if (const auto after = places.constFind(item->after); after != places.constEnd()) {
            next = std::next(*after);
        } else if (const auto before = places.constFind(item->before);
                   before != places.constEnd() && !item->after.isEmpty()) {
            next = *before;
        } else if (!item->after.isEmpty()) {
            const auto last = static_cast<qsizetype>(order.size());
            next = std::next(order.begin(), std::clamp<qsizetype>(item->index, 0, last));
        }
        places.insert(item->id, order.insert(next, item->id));
    }
    return {order.begin(), order.end()};
}

// Takes one of those that are remembered, or installed, under a file name.
class ByFileName {
public:
    void add(const QString& path) { paths_[lastPathComponent(path).toString()].append(path); }

    std::optional<QString> take(const QString& path) {
        const auto found = paths_.find(lastPathComponent(path).toString());
        return found == paths_.end() || found->isEmpty() ? std::nullopt : std::optional(found->takeFirst());
    }

    [[nodiscard]] bool contains(const QString& path) const {
        return paths_.contains(lastPathComponent(path).toString());
    }

private:
    QHash<QString, QStringList> paths_;
};

// Which remembered identities are those of applications that are installed again, and under which paths.
QHash<QString, QString> returnedPaths(const std::vector<RememberedItem>& remembered, const LaunchItems& items,
                                      const std::vector<AppInfo>& installed) {
    QSet<QString> installedPaths;
    installedPaths.reserve(static_cast<qsizetype>(installed.size()));
    for (const AppInfo& app : installed) {
        installedPaths.insert(app.path);
    }
    QSet<QString> known;
    ByFileName moved;
    for (const QString& path : pathsOf(items)) {
        known.insert(path);
        if (!installedPaths.contains(path)) {
            moved.add(path);
        }
    }
    QSet<QString> rememberedIds;
    ByFileName elsewhere;
    for (const RememberedItem& item : remembered) {
        if (!isFolderId(item.id)) {
            rememberedIds.insert(item.id);
            if (const QString path = pathOfId(item.id); !installedPaths.contains(path)) {
                elsewhere.add(path);
            }
        }
    }
    QHash<QString, QString> returned;
    for (const AppInfo& app : installed) {
        if (known.contains(app.path)) {
            continue;
        }
        if (const QString id = appItemId(app.path); rememberedIds.contains(id)) {
            returned.insert(id, app.path);
        } else if (!moved.contains(app.path)) {
            if (const auto path = elsewhere.take(app.path)) {
                returned.insert(appItemId(*path), app.path);
            }
        }
    }
    return returned;
}

// Replaces identities among those that places refer to.
void rename(std::vector<RememberedItem>& remembered, const QHash<QString, QString>& renamed) {
    if (!renamed.isEmpty()) {
        for (RememberedItem& item : remembered) {
            item.after = renamed.value(item.after, item.after);
            item.before = renamed.value(item.before, item.before);
        }
    }
}

// The places of the gone items of one list, which `order` has where they stood. What is neither there nor
// gone is passed over; a folder may be both, there itself and some of its applications gone.
template<typename IsThere, typename IsGone>
std::vector<RememberedItem> placesIn(const QStringList& order, IsThere isThere, IsGone isGone) {
    std::vector<RememberedItem> places;
    QString last;
    qsizetype index = 0;
    std::size_t awaitsNext = 0; // the places from here on have no item behind them yet
    for (const QString& id : order) {
        const bool there = isThere(id);
        const bool gone = isGone(id);
        if (!there && !gone) {
            continue;
        }
        for (; there && awaitsNext < places.size(); ++awaitsNext) {
            places[awaitsNext].before = id;
        }
        if (gone) {
            places.push_back({.id = id, .after = last, .index = index});
        }
        last = id;
        ++index;
    }
    return places;
}

// Takes away what has been gone for too long, and what has been gone longest where that is too much.
void limit(QHash<QString, PlaceMemory::Date>& gone, PlaceMemory::Date now) {
    gone.removeIf([now](const auto& entry) { return entry.value() < now - PlaceMemory::longest; });
    if (static_cast<std::size_t>(gone.size()) <= PlaceMemory::mostApplications) {
        return;
    }
    std::vector<std::pair<PlaceMemory::Date, QString>> newest;
    for (auto entry = gone.constKeyValueBegin(); entry != gone.constKeyValueEnd(); ++entry) {
        newest.emplace_back(entry->second, entry->first);
    }
    std::sort(newest.begin(), newest.end(), std::greater<>());
    for (std::size_t place = PlaceMemory::mostApplications; place < newest.size(); ++place) {
        gone.remove(newest[place].second);
    }
}

} // namespace

PlaceMemory::PlaceMemory(std::vector<RememberedItem> remembered, Date now)
    : remembered_(std::move(remembered)) {
    Gone gone;
    QSet<QUuid> folders;
    for (const RememberedItem& item : remembered_) {
        if (isFolderId(item.id)) {
            folders.insert(QUuid::fromString(item.id.sliced(2)));
        }
    }
    for (RememberedItem& item : remembered_) {
        // A clock that was wrong when it went.
        item.since = std::min(item.since, now);
        if (!isFolderId(item.id) && (!item.folder || folders.contains(*item.folder))) {
            gone.insert(item.id, item.since);
        }
    }
    limit(gone, now);
    std::erase_if(remembered_, [&](const RememberedItem& item) {
        return !isFolderId(item.id) && !gone.contains(item.id);
    });
}

LaunchItems PlaceMemory::putBack(const LaunchItems& items, const std::vector<AppInfo>& installed) {
    const QHash<QString, QString> returned =
        remembered_.empty() ? QHash<QString, QString>() : returnedPaths(remembered_, items, installed);
    if (returned.isEmpty()) {
        return items;
    }
    const RememberedByContainer remembered(remembered_);
    const auto appsOf = [&](const Folder& folder) {
        const QSet<QString> there = setOf(folder.apps);
        QStringList apps;
        for (const QString& id : withRemembered(idsOf(folder.apps), remembered.folders.value(folder.id))) {
            if (const QString path = pathOfId(id); there.contains(path)) {
                apps.append(path);
            } else if (const auto back = returned.constFind(id); back != returned.constEnd()) {
                apps.append(*back);
            }
        }
        return apps;
    };
    QHash<QString, const LaunchItem*> there;
    for (const LaunchItem& item : items) {
        there.insert(item.id(), &item);
    }
    QHash<QString, const RememberedItem*> gone;
    for (const RememberedItem* item : remembered.pages) {
        gone.insert(item->id, item);
    }
    LaunchItems result;
    for (const QString& id : withRemembered(idsOf(items), remembered.pages)) {
        const LaunchItem* item = there.value(id);
        if (isFolderId(id)) {
            Folder folder = item != nullptr
                                ? *item->asFolder()
                                : Folder{QUuid::fromString(id.sliced(2)), gone.value(id)->folderName, {}};
            folder.apps = appsOf(folder);
            if (item != nullptr || !folder.apps.isEmpty()) {
                result.push_back(LaunchItem::folder(std::move(folder)));
            }
        } else if (item != nullptr) {
            result.push_back(*item);
        } else if (const auto back = returned.constFind(id); back != returned.constEnd()) {
            result.push_back(LaunchItem::app(*back));
        }
    }

    Gone stillGone = this->gone();
    QHash<QString, QString> renamed;
    for (auto entry = returned.constKeyValueBegin(); entry != returned.constKeyValueEnd(); ++entry) {
        stillGone.remove(entry->first);
        renamed.insert(entry->first, appItemId(entry->second));
    }
    rename(remembered_, renamed);
    place(result, stillGone);
    return result;
}

bool PlaceMemory::remember(const LaunchItems& before, const LaunchItems& after, Date now) {
    const QStringList pathsBefore = pathsOf(before);
    const QStringList pathsAfter = pathsOf(after);
    const QSet<QString> wereThere = setOf(pathsBefore);
    const QSet<QString> areThere = setOf(pathsAfter);
    ByFileName added;
    for (const QString& path : pathsAfter) {
        if (!wereThere.contains(path)) {
            added.add(path);
        }
    }
    std::erase_if(remembered_, [&](const RememberedItem& item) {
        return !isFolderId(item.id) &&
               (wereThere.contains(pathOfId(item.id)) || areThere.contains(pathOfId(item.id)));
    });
    Gone gone = this->gone();
    QHash<QString, QString> moved;
    bool hasNew = false;
    for (const QString& path : pathsBefore) {
        const QString id = appItemId(path);
        if (areThere.contains(path) || moved.contains(id)) {
            continue;
        }
        if (const auto elsewhere = added.take(path)) {
            moved.insert(id, appItemId(*elsewhere));
        } else {
            gone.insert(id, now);
            hasNew = true;
        }
    }
    if (hasNew) {
        limit(gone, now);
        place(before, gone);
        rename(remembered_, moved);
    }
    return hasNew;
}

PlaceMemory::Gone PlaceMemory::gone() const {
    Gone gone;
    for (const RememberedItem& item : remembered_) {
        if (!isFolderId(item.id)) {
            gone.insert(item.id, item.since);
        }
    }
    return gone;
}

// Writes down anew where the gone applications stand among `items`, which may still have them.
void PlaceMemory::place(const LaunchItems& items, const Gone& gone) {
    const RememberedByContainer remembered(remembered_);
    const auto isGone = [&](const QString& id) { return gone.contains(id); };

    // Folder by folder: the applications in it that are gone.
    std::vector<RememberedItem> inFolders;
    QHash<QString, Date> folders; // that some are gone from, and since when
    const auto placeIn = [&](const QUuid& id, const QStringList& apps) {
        const QStringList ids = idsOf(apps);
        const QSet<QString> there = setOf(ids);
        const auto isThere = [&](const QString& app) { return there.contains(app) && !gone.contains(app); };
        for (RememberedItem& item :
             placesIn(withRemembered(ids, remembered.folders.value(id)), isThere, isGone)) {
            item.folder = id;
            item.since = gone.value(item.id);
            Date& since = folders[folderItemId(id)];
            since = std::max(since, item.since);
            inFolders.push_back(std::move(item));
        }
    };
    QSet<QString> there;
    QHash<QString, QString> names;
    for (const LaunchItem& item : items) {
        const QString id = item.id();
        if (const Folder* folder = item.asFolder()) {
            there.insert(id);
            names.insert(id, folder->name);
            placeIn(folder->id, folder->apps);
        } else if (!gone.contains(id)) {
            there.insert(id);
        }
    }
    for (const RememberedItem* item : remembered.pages) {
        if (isFolderId(item->id) && !there.contains(item->id)) {
            names.insert(item->id, item->folderName);
            placeIn(QUuid::fromString(item->id.sliced(2)), {});
        }
    }

    std::vector<RememberedItem> placed = placesIn(
        withRemembered(idsOf(items), remembered.pages), [&](const QString& id) { return there.contains(id); },
        [&](const QString& id) { return gone.contains(id) || folders.contains(id); });
    for (RememberedItem& item : placed) {
        item.folderName = names.value(item.id);
        item.since = isFolderId(item.id) ? folders.value(item.id) : gone.value(item.id);
    }
    std::move(inFolders.begin(), inFolders.end(), std::back_inserter(placed));
    remembered_ = std::move(placed);
}

} // namespace amberquill
