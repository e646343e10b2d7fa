#include "shell/NameDiskCache.h"

#include "data/CacheFiles.h"
#include "platform/FileSystem.h"
#include "platform/MainQueue.h"
#include "shell/ShellLog.h"

namespace amberquill {

namespace {

constexpr qint64 largestNames = 32LL * 1024 * 1024;

QString namesPath(const QString& caches) {
    return caches + QStringLiteral("/Amberquill/names");
}

} // namespace

NameDiskCache::NameDiskCache(MainQueue& queue, FileSystem& files, const QString& caches, QString language,
                             QObject* parent)
    : QObject(parent)
    , queue_(queue)
    , files_(files)
    , path_(namesPath(caches))
    , language_(std::move(language)) {}

QHash<QString, QString> NameDiskCache::load(const FileSystem& files, const QString& caches,
                                            const QString& language) {
    const auto content = files.readFile(namesPath(caches), largestNames);
    return content ? decodeNames(*content, language) : QHash<QString, QString>();
}

void NameDiskCache::follow(const LauncherModel& model) const {
    connect(&model, &LauncherModel::scanned, this, &NameDiskCache::save);
}

void NameDiskCache::save(const std::vector<AppInfo>& installed) {
    // While a write is under way the scan is skipped: the next one writes.
    if (std::exchange(isWriting_, true)) {
        return;
    }
    queue_.runInBackground(
        [installed, language = language_, &files = files_, path = path_] {
            const QByteArray content = encodeNames(language, installed);
            if (files.readFile(path, largestNames) != content && !files.writeAtomically(path, content)) {
                qCDebug(shellLog) << "cannot write" << path;
            }
        },
        context_.bind([this] { isWriting_ = false; }), Lane::Save);
}

} // namespace amberquill
