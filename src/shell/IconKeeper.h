#pragma once

#include "data/KeptIcons.h"
#include "model/LauncherModel.h"

#include <QList>
#include <QObject>
#include <QString>
#include <utility>

namespace amberquill {

class FileSystem;
class IconCache;
class MainQueue;

// Keeps the pictures of the first page's applications on the disk, so that the next start's first picture has
// them.
class IconKeeper final : public QObject {
    Q_OBJECT

public:
    struct Services {
        LauncherModel& model;
        IconCache& icons;
        MainQueue& queue;
        FileSystem& files;
    };

    using Identities = QList<std::pair<QString, qint64>>; // applications and their images

    // `caches` is the folder for what can be deleted at any time, `loaded` what `load` found in it. The
    // services outlive the keeper.
    IconKeeper(const Services& services, const QString& caches, const std::vector<KeptIcon>& loaded,
               QObject* parent = nullptr);

    // What the last run left. Safe on any thread.
    [[nodiscard]] static std::vector<KeptIcon> load(const FileSystem& files, const QString& caches);

    // Has the first page's icons of `edge` device pixels decoded, but for those that are known. Whether there
    // were none to decode.
    static bool prepareFirstPage(const LauncherModel& model, IconCache& icons, int edge);

    // From now on the icons are written whenever the launcher goes away, and now, where they have changed.
    void start();

private:
    void keep();

    Services services_;
    QString path_;
    Identities kept_; // what the file holds
};

} // namespace amberquill
