#pragma once

#include "model/LauncherModel.h"

#include <QHash>
#include <QObject>
#include <QString>

namespace amberquill {

class FileSystem;
class MainQueue;

// Stores the names of the last scan on disk, so that the first frame of the next start can show them.
class NameDiskCache final : public QObject {
    Q_OBJECT

public:
    // `caches` is the folder for deletable files; `language` is the language of the names.
    NameDiskCache(MainQueue& queue, FileSystem& files, const QString& caches, QString language,
                  QObject* parent = nullptr);

    // The names that the last run stored, by path. Safe on any thread.
    [[nodiscard]] static QHash<QString, QString> load(const FileSystem& files, const QString& caches,
                                                      const QString& language);

    // Writes the names after each scan that changed them. The model outlives the cache.
    void follow(const LauncherModel& model) const;

private:
    void save(const std::vector<AppInfo>& installed);

    MainQueue& queue_;
    FileSystem& files_;
    QString path_;
    QString language_;
    bool isWriting_ = false;
    Context context_;
};

} // namespace amberquill
