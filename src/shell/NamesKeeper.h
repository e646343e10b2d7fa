#pragma once

#include "model/LauncherModel.h"

#include <QHash>
#include <QObject>
#include <QString>

namespace amberquill {

class FileSystem;
class MainQueue;

// Keeps the names of the last scan on the disk, so that the next start's first picture shows them at once.
class NamesKeeper final : public QObject {
    Q_OBJECT

public:
    // `caches` is the folder for what can be deleted at any time, `language` the one the names are in.
    NamesKeeper(MainQueue& queue, FileSystem& files, const QString& caches, QString language,
                QObject* parent = nullptr);

    // What the last start left, by path. Safe on any thread.
    [[nodiscard]] static QHash<QString, QString> load(const FileSystem& files, const QString& caches,
                                                      const QString& language);

    // Writes the names after each scan that changed them. The model outlives the keeper.
    void follow(const LauncherModel& model) const;

private:
    void keep(const std::vector<AppInfo>& installed);

    MainQueue& queue_;
    FileSystem& files_;
    QString path_;
    QString language_;
    bool writing_ = false;
};

} // namespace amberquill
