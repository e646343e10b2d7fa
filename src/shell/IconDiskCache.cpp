#include "shell/IconDiskCache.h"

#include "data/IconCache.h"
#include "platform/FileSystem.h"
#include "platform/MainQueue.h"
#include "shell/ShellLog.h"

#include <QHash>
#include <algorithm>
#include <span>

namespace amberquill {

namespace {

constexpr qint64 largestIcons = 64LL * 1024 * 1024;
constexpr qsizetype iconsOnFolderTile = 9;

QString iconsPath(const QString& caches) {
    return caches + QStringLiteral("/Amberquill/icons");
}

std::span<const LaunchItem> firstPage(const LauncherModel& model) {
    const auto room = static_cast<std::size_t>(model.columns()) * static_cast<std::size_t>(model.rows());
    return std::span(model.items()).first(std::min(model.items().size(), room));
}

// In memory all generic icons of one size are one image; the file stores a copy for each application. So
// loaded generic icons of one size count as the same image.
IconDiskCache::Identities identitiesOf(const std::vector<StoredIcon>& icons) {
    QHash<int, qint64> genericIcons; // by edge
    IconDiskCache::Identities identities;
    for (const StoredIcon& icon : icons) {
        qint64 image = icon.image.cacheKey();
        if (icon.isGeneric) {
            qint64& generic = genericIcons[icon.image.width()];
            generic = generic == 0 ? image : generic;
            image = generic;
        }
        identities.append({icon.path, image});
    }
    return identities;
}

} // namespace

IconDiskCache::IconDiskCache(const Services& services, const QString& caches,
                             const std::vector<StoredIcon>& loaded, QObject* parent)
    : QObject(parent)
    , services_(services)
    , path_(iconsPath(caches))
    , stored_(identitiesOf(loaded)) {}

std::vector<StoredIcon> IconDiskCache::load(const FileSystem& files, const QString& caches) {
    const auto content = files.readFile(iconsPath(caches), largestIcons);
    return content ? decodeIcons(*content) : std::vector<StoredIcon>();
}

bool IconDiskCache::prepareFirstPage(const LauncherModel& model, IconCache& icons, int edge) {
    bool isReady = true;
    for (const LaunchItem& item : firstPage(model)) {
        if (const QString* path = item.asApp(); path != nullptr && !icons.isKnown(*path, edge)) {
            icons.icon(*path, edge);
            isReady = false;
        }
    }
    return isReady;
}

void IconDiskCache::start() {
    connect(&services_.model, &LauncherModel::presentedChanged, this, [this] {
        if (!services_.model.presented()) {
            save();
        }
    });
    save();
}

void IconDiskCache::save() {
    QStringList paths;
    for (const LaunchItem& item : firstPage(services_.model)) {
        if (const QString* path = item.asApp()) {
            paths += *path;
        } else if (const Folder* folder = item.asFolder()) {
            paths += folder->apps.first(std::min(folder->apps.size(), iconsOnFolderTile));
        }
    }
    const std::vector<StoredIcon> icons = services_.icons.snapshot(paths);
    const Identities identities = identitiesOf(icons);
    if (identities == stored_ || icons.empty()) {
        return;
    }
    stored_ = identities;
    services_.queue.runInBackground(
        [icons, &files = services_.files, path = path_] {
            if (!files.writeAtomically(path, encodeIcons(icons))) {
                qCDebug(shellLog) << "cannot write" << path;
            }
        },
        [] {}, Lane::Save);
}

} // namespace amberquill
