#include "shell/NamesKeeper.h"

#include "data/NamesCache.h"
#include "platform/FileSystem.h"
#include "platform/MainQueue.h"

#include <QPointer>

namespace amberquill {

namespace {

constexpr qint64 largestNames = 32LL * 1024 * 1024;

QString namesPath(const QString& caches) {
    return caches + QStringLiteral("/Amberquill/names");
}

} // namespace

NamesKeeper::NamesKeeper(MainQueue& queue, FileSystem& files, const QString& caches, QString language,
                         QObject* parent)
    : QObject(parent)
    , queue_(queue)
    , files_(files)
    , path_(namesPath(caches))
    , language_(std::move(language)) {}

QHash<QString, QString> NamesKeeper::load(const FileSystem& files, const QString& caches,
                                          const QString& language) {
    const auto content = files.readFile(namesPath(caches), largestNames);
    return content ? decodeNames(*content, language) : QHash<QString, QString>();
}

void NamesKeeper::follow(const LauncherModel& model) const {
    connect(&model, &LauncherModel::scanned, this, &NamesKeeper::keep);
}

void NamesKeeper::keep(const std::vector<AppInfo>& installed) {
    // A scan that comes while the last one's names are being written is left to the next.
    if (std::exchange(writing_, true)) {
        return;
    }
    queue_.runInBackground(
        [installed, language = language_, &files = files_, path = path_] {
            const QByteArray content = encodeNames(language, installed);
            if (files.readFile(path, largestNames) != content) {
                files.writeAtomically(path, content);
            }
        },
        [self = QPointer(this)] {
            if (self != nullptr) {
                self->writing_ = false;
            }
        },
        Lane::Save);
}

} // namespace amberquill
