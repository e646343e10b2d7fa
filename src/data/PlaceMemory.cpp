#include "data/PlaceMemory.h"

#include "data/DataLog.h"

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

// The remembered items of the pages and of each folder, in the order of their places.
struct RememberedByContainer {
    explicit RememberedByContainer(const std::vector<RememberedItem>& remembered) {
        for (const RememberedItem& item : remembered) {
            (item.folder ? folders[*item.folder] : pages).push_back(&item);
        }
    }

    std::vector<const RememberedItem*> pages;
    QHash<QUuid, std::vector<const RememberedItem*>> folders;
};

// A list of ids with the remembered items inserted at their places.
QStringList withRemembered(const QStringList& present, const std::vector<const RememberedItem*>& remembered) {
    std::list<QString> order(present.begin(), present.end());
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

// Paths by their file names.
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

// The remembered applications that are installed again: their ids and their paths now.
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

// Replaces the ids of neighbours.
void rename(std::vector<RememberedItem>& remembered, const QHash<QString, QString>& renamed) {
    if (!renamed.isEmpty()) {
        for (RememberedItem& item : remembered) {
            item.after = renamed.value(item.after, item.after);
            item.before = renamed.value(item.before, item.before);
        }
    }
}

// The places of the missing items of one list. `order` has all items, present or missing; others are skipped.
// A folder may be both: present, with some of its applications missing.
template<typename IsPresent, typename IsMissing>
std::vector<RememberedItem> placesIn(const QStringList& order, IsPresent isPresent, IsMissing isMissing) {
    std::vector<RememberedItem> places;
    QString last;
    qsizetype index = 0;
    std::size_t awaitsNext = 0; // from here on, the next present item is not known yet
    for (const QString& id : order) {
        const bool present = isPresent(id);
        const bool missing = isMissing(id);
        if (!present && !missing) {
            continue;
        }
        for (; present && awaitsNext < places.size(); ++awaitsNext) {
            places[awaitsNext].before = id;
        }
        if (missing) {
            places.push_back({.id = id, .after = last, .index = index});
        }
        last = id;
        ++index;
    }
    return places;
}

// Applies the limits of PlaceMemory.
void limit(QHash<QString, PlaceMemory::Date>& missing, PlaceMemory::Date now) {
    const qsizetype all = missing.size();
    missing.removeIf([now](const auto& entry) { return entry.value() < now - PlaceMemory::longest; });
    if (missing.size() < all) {
        qCDebug(dataLog) << "places forgotten as too old:" << all - missing.size();
    }
    if (static_cast<std::size_t>(missing.size()) <= PlaceMemory::mostApplications) {
        return;
    }
    qCDebug(dataLog) << "places forgotten as too many:"
                     << static_cast<std::size_t>(missing.size()) - PlaceMemory::mostApplications;
    std::vector<std::pair<PlaceMemory::Date, QString>> newest;
    for (auto entry = missing.constKeyValueBegin(); entry != missing.constKeyValueEnd(); ++entry) {
        newest.emplace_back(entry->second, entry->first);
    }
    std::sort(newest.begin(), newest.end(), std::greater<>());
    for (std::size_t place = PlaceMemory::mostApplications; place < newest.size(); ++place) {
        missing.remove(newest[place].second);
    }
}

} // namespace

PlaceMemory::PlaceMemory(std::vector<RememberedItem> remembered, Date now)
    : remembered_(std::move(remembered)) {
    Missing missing;
    QSet<QUuid> folders;
    for (const RememberedItem& item : remembered_) {
        if (isFolderId(item.id)) {
            folders.insert(QUuid::fromString(item.id.sliced(2)));
        }
    }
    for (RememberedItem& item : remembered_) {
        // The clock may have been wrong.
        item.since = std::min(item.since, now);
        if (!isFolderId(item.id) && (!item.folder || folders.contains(*item.folder))) {
            missing.insert(item.id, item.since);
        }
    }
    limit(missing, now);
    std::erase_if(remembered_, [&](const RememberedItem& item) {
        return !isFolderId(item.id) && !missing.contains(item.id);
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
        const QSet<QString> present = setOf(folder.apps);
        QStringList apps;
        for (const QString& id : withRemembered(idsOf(folder.apps), remembered.folders.value(folder.id))) {
            if (const QString path = pathOfId(id); present.contains(path)) {
                apps.append(path);
            } else if (const auto back = returned.constFind(id); back != returned.constEnd()) {
                apps.append(*back);
            }
        }
        return apps;
    };
    QHash<QString, const LaunchItem*> present;
    for (const LaunchItem& item : items) {
        present.insert(item.id(), &item);
    }
    QHash<QString, const RememberedItem*> missing;
    for (const RememberedItem* item : remembered.pages) {
        missing.insert(item->id, item);
    }
    LaunchItems result;
    for (const QString& id : withRemembered(idsOf(items), remembered.pages)) {
        const LaunchItem* item = present.value(id);
        if (isFolderId(id)) {
            Folder folder = item != nullptr
                                ? *item->asFolder()
                                : Folder{QUuid::fromString(id.sliced(2)), missing.value(id)->folderName, {}};
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

    Missing stillMissing = this->missing();
    QHash<QString, QString> renamed;
    for (auto entry = returned.constKeyValueBegin(); entry != returned.constKeyValueEnd(); ++entry) {
        stillMissing.remove(entry->first);
        renamed.insert(entry->first, appItemId(entry->second));
    }
    rename(remembered_, renamed);
    record(result, stillMissing);
    return result;
}

bool PlaceMemory::remember(const LaunchItems& before, const LaunchItems& after, Date now) {
    const QStringList pathsBefore = pathsOf(before);
    const QStringList pathsAfter = pathsOf(after);
    const QSet<QString> werePresent = setOf(pathsBefore);
    const QSet<QString> arePresent = setOf(pathsAfter);
    ByFileName added;
    for (const QString& path : pathsAfter) {
        if (!werePresent.contains(path)) {
            added.add(path);
        }
    }
    std::erase_if(remembered_, [&](const RememberedItem& item) {
        return !isFolderId(item.id) &&
               (werePresent.contains(pathOfId(item.id)) || arePresent.contains(pathOfId(item.id)));
    });
    Missing missing = this->missing();
    QHash<QString, QString> moved;
    bool foundMissing = false;
    for (const QString& path : pathsBefore) {
        const QString id = appItemId(path);
        if (arePresent.contains(path) || moved.contains(id)) {
            continue;
        }
        if (const auto elsewhere = added.take(path)) {
            moved.insert(id, appItemId(*elsewhere));
        } else {
            missing.insert(id, now);
            foundMissing = true;
        }
    }
    if (foundMissing) {
        limit(missing, now);
        record(before, missing);
        rename(remembered_, moved);
    }
    return foundMissing;
}

PlaceMemory::Missing PlaceMemory::missing() const {
    Missing missing;
    for (const RememberedItem& item : remembered_) {
        if (!isFolderId(item.id)) {
            missing.insert(item.id, item.since);
        }
    }
    return missing;
}

// Records the places of the missing applications among `items`, which may still contain them.
void PlaceMemory::record(const LaunchItems& items, const Missing& missing) {
    const RememberedByContainer remembered(remembered_);
    const auto isMissing = [&](const QString& id) { return missing.contains(id); };

    // The missing applications of each folder.
    std::vector<RememberedItem> inFolders;
    QHash<QString, Date> folders; // with missing applications, and since when
    const auto placeIn = [&](const QUuid& id, const QStringList& apps) {
        const QStringList ids = idsOf(apps);
        const QSet<QString> present = setOf(ids);
        const auto isPresent = [&](const QString& app) {
            return present.contains(app) && !missing.contains(app);
        };
        for (RememberedItem& item :
             placesIn(withRemembered(ids, remembered.folders.value(id)), isPresent, isMissing)) {
            item.folder = id;
            item.since = missing.value(item.id);
            Date& since = folders[folderItemId(id)];
            since = std::max(since, item.since);
            inFolders.push_back(std::move(item));
        }
    };
    QSet<QString> present;
    QHash<QString, QString> names;
    for (const LaunchItem& item : items) {
        const QString id = item.id();
        if (const Folder* folder = item.asFolder()) {
            present.insert(id);
            names.insert(id, folder->name);
            placeIn(folder->id, folder->apps);
        } else if (!missing.contains(id)) {
            present.insert(id);
        }
    }
    for (const RememberedItem* item : remembered.pages) {
        if (isFolderId(item->id) && !present.contains(item->id)) {
            names.insert(item->id, item->folderName);
            placeIn(QUuid::fromString(item->id.sliced(2)), {});
        }
    }

    std::vector<RememberedItem> placed = placesIn(
        withRemembered(idsOf(items), remembered.pages),
        [&](const QString& id) { return present.contains(id); },
        [&](const QString& id) { return missing.contains(id) || folders.contains(id); });
    for (RememberedItem& item : placed) {
        item.folderName = names.value(item.id);
        item.since = isFolderId(item.id) ? folders.value(item.id) : missing.value(item.id);
    }
    std::move(inFolders.begin(), inFolders.end(), std::back_inserter(placed));
    remembered_ = std::move(placed);
}

} // namespace amberquill
