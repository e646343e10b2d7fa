#pragma once

#include "data/CacheFiles.h"
#include "model/LauncherModel.h"

#include <QList>
#include <QObject>
#include <QString>
#include <utility>

namespace amberquill {

class FileSystem;
class IconCache;
class MainQueue;

// Stores the icons of the first page's applications on disk, so that the first frame of the next start can
// show them without decoding.
class IconDiskCache final : public QObject {
    Q_OBJECT

public:
    struct Services {
        LauncherModel& model;
        IconCache& icons;
        MainQueue& queue;
        FileSystem& files;
    };

    using Identities = QList<std::pair<QString, qint64>>; // applications and the cache keys of their images

    // `caches` is the folder for deletable files; `loaded` is what `load` found there. The services outlive
    // the cache.
    IconDiskCache(const Services& services, const QString& caches, const std::vector<StoredIcon>& loaded,
                  QObject* parent = nullptr);

    // The icons that the last run stored. Safe on any thread.
    [[nodiscard]] static std::vector<StoredIcon> load(const FileSystem& files, const QString& caches);

    // Requests the first page's icons of `edge` device pixels that have not been decoded yet. Returns whether
    // all of them had been.
    static bool prepareFirstPage(const LauncherModel& model, IconCache& icons, int edge);

    // Writes the icons if they have changed: now, and each time that the launcher is hidden.
    void start();

private:
    void save();

    Services services_;
    QString path_;
    Identities stored_; // the file's content
};

} // namespace amberquill
