#include "model/LayoutStore.h"

#include "data/LayoutCoding.h"
#include "platform/MainQueue.h"

#include <mutex>
#include <utility>

namespace amberquill {

namespace {

QString pathIn(const QString& folder) {
    return folder + QStringLiteral("/Amberquill/layout.json");
}

} // namespace

// Writes the newest content it was given. Content that was overtaken before its turn came is not written at
// all.
class LayoutStore::Writer {
public:
    Writer(FileSystem& files, QString path)
        : files_(files)
        , path_(std::move(path)) {}

    // What the file is known to hold.
    void assumeWritten(const QByteArray& content) { written_ = content; }

    // The file could not be decoded: it is moved out of the way before something takes its place.
    void setAsideBeforeWriting() { setAsideFirst_ = true; }

    void offer(QByteArray content) {
        const std::scoped_lock lock(mutex_);
        waiting_ = std::move(content);
        hasWaiting_ = true;
    }

    // Safe on any thread; waits for a write that is under way on another.
    void write() {
        const std::scoped_lock writing(writeMutex_);
        QByteArray content;
        {
            const std::scoped_lock lock(mutex_);
            if (!std::exchange(hasWaiting_, false)) {
                return;
            }
            content = std::move(waiting_);
        }
        // The file may have been deleted or changed by others since.
        if (content == written_ && files_.readFile(path_, largestLayoutText) == content) {
            return;
        }
        if (std::exchange(setAsideFirst_, false)) {
            files_.setAside(path_);
        }
        if (files_.writeAtomically(path_, content)) {
            written_ = content;
        }
    }

private:
    FileSystem& files_;
    QString path_;
    std::mutex writeMutex_; // held while a write is under way; guards written_ and setAsideFirst_
    QByteArray written_;
    bool setAsideFirst_ = false;
    std::mutex mutex_; // guards what waits
    QByteArray waiting_;
    bool hasWaiting_ = false;
};

LayoutStore::LayoutStore(MainQueue& queue, FileSystem& files, const QString& folder)
    : queue_(queue)
    , files_(files)
    , folder_(folder)
    , writer_(std::make_shared<Writer>(files, pathIn(folder))) {}

StoredLayout LayoutStore::read(const FileSystem& files, const QString& folder) {
    StoredLayout stored;
    if (auto content = files.readFile(pathIn(folder), largestLayoutText)) {
        auto decoded = decodeItems(*content);
        if (auto* items = std::get_if<LaunchItems>(&decoded)) {
            stored = {std::move(*content), std::move(*items)};
        }
    }
    return stored;
}

LaunchItems LayoutStore::start(StoredLayout stored) {
    if (stored.items) {
        writer_->assumeWritten(stored.content);
        return std::move(*stored.items);
    }
    // A file that is merely missing has nothing to set aside.
    writer_->setAsideBeforeWriting();
    return {};
}

void LayoutStore::save(const LaunchItems& items) {
    writer_->offer(encodeItems(items));
    const std::shared_ptr<Writer> writer = writer_;
    queue_.runInBackground([writer] { writer->write(); }, [] {});
}

void LayoutStore::flush() {
    writer_->write();
}

} // namespace amberquill
