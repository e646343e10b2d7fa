#include "model/LayoutEdits.h"

#include <QSet>
#include <algorithm>
#include <utility>

namespace amberquill::LayoutEdits {

namespace {

template<typename Matches>
std::optional<std::size_t> firstIndex(const LaunchItems& items, Matches matches) {
    const auto found = std::find_if(items.begin(), items.end(), matches);
    return found == items.end() ? std::nullopt
                                : std::optional(static_cast<std::size_t>(found - items.begin()));
}

LaunchItems::iterator at(LaunchItems& items, std::size_t index) {
    return items.begin() + static_cast<LaunchItems::difference_type>(index);
}

} // namespace

std::optional<std::size_t> indexOf(const LaunchItems& items, const QString& id) {
    return firstIndex(items, [&id](const LaunchItem& item) { return item.hasId(id); });
}

std::optional<std::size_t> folderIndex(const LaunchItems& items, const QUuid& id) {
    return firstIndex(items, [&id](const LaunchItem& item) {
        const Folder* folder = item.asFolder();
        return folder != nullptr && folder->id == id;
    });
}

void separateFolders(LaunchItems& items) {
    QSet<QUuid> ids;
    for (LaunchItem& item : items) {
        const Folder* folder = item.asFolder();
        if (folder != nullptr && ids.contains(folder->id)) {
            item = LaunchItem::folder({QUuid::createUuid(), folder->name, folder->apps});
        } else if (folder != nullptr) {
            ids.insert(folder->id);
        }
    }
}

void move(LaunchItems& items, std::size_t from, std::size_t to) {
    LaunchItem moved = std::move(items[from]);
    if (from < to) {
        std::move(at(items, from + 1), at(items, to + 1), at(items, from));
    } else {
        std::move_backward(at(items, to), at(items, from), at(items, from + 1));
    }
    items[to] = std::move(moved);
}

void moveInFolder(LaunchItems& items, std::size_t folder, qsizetype from, qsizetype to) {
    Folder changed = *items[folder].asFolder();
    changed.apps.move(from, to);
    items[folder] = LaunchItem::folder(std::move(changed));
}

void rename(LaunchItems& items, std::size_t folder, const QString& name) {
    Folder changed = *items[folder].asFolder();
    changed.name = name;
    items[folder] = LaunchItem::folder(std::move(changed));
}

std::optional<QUuid> merge(LaunchItems& items, std::size_t dragged, const QString& targetId,
                           const QString& newFolderName) {
    const auto target = indexOf(items, targetId);
    const QString* path = items[dragged].asApp();
    if (!target || *target == dragged || path == nullptr) {
        return std::nullopt;
    }
    Folder folder;
    std::optional<QUuid> made;
    if (const Folder* existing = items[*target].asFolder()) {
        folder = *existing;
    } else {
        made = QUuid::createUuid();
        folder = {*made, newFolderName, {*items[*target].asApp()}};
    }
    folder.apps.append(*path);
    items[*target] = LaunchItem::folder(std::move(folder));
    items.erase(at(items, dragged));
    return made;
}

std::size_t pullOut(LaunchItems& items, std::size_t folder, const QString& path) {
    Folder rest = *items[folder].asFolder();
    rest.apps.removeAll(path);
    std::size_t place = folder + 1;
    if (rest.apps.isEmpty()) {
        items.erase(at(items, folder));
        place = folder;
    } else if (rest.apps.size() == 1) {
        items[folder] = LaunchItem::app(rest.apps.front());
    } else {
        items[folder] = LaunchItem::folder(std::move(rest));
    }
    items.insert(at(items, place), LaunchItem::app(path));
    return place;
}

} // namespace amberquill::LayoutEdits
