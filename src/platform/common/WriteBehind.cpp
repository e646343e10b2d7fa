#include "platform/common/WriteBehind.h"

#include "platform/FileSystem.h"
#include "platform/MainQueue.h"

#include <QLoggingCategory>
#include <algorithm>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

namespace amberquill {

namespace {

Q_LOGGING_CATEGORY(savingLog, "amberquill.saving", QtCriticalMsg)

// Seconds between attempts to write what could not be written.
constexpr double firstPause = 1;
constexpr double longestPause = 300;

} // namespace

class WriteBehind::Writer : public std::enable_shared_from_this<Writer> {
public:
    Writer(MainQueue& queue, FileSystem& files, QString path, qint64 largest)
        : queue_(queue)
        , files_(files)
        , path_(std::move(path))
        , largest_(largest) {}

    void assumeHeld(const QByteArray& content) {
        const std::scoped_lock writing(writeMutex_);
        held_ = content;
    }

    void writeAfter(std::shared_ptr<Writer> other) { earlier_ = std::move(other); }

    void save(QByteArray content) {
        {
            const std::scoped_lock lock(mutex_);
            waiting_ = std::move(content);
        }
        pause_ = firstPause;
        request();
    }

    void tryAgain() {
        if (hasWaiting()) {
            request();
        }
    }

    // Any thread; waits for a write that is running on another.
    void write() {
        if (earlier_) {
            earlier_->write();
        }
        const std::scoped_lock writing(writeMutex_);
        std::optional<QByteArray> content;
        {
            const std::scoped_lock lock(mutex_);
            content = std::exchange(waiting_, std::nullopt);
        }
        if (!content || replace(*content)) {
            return;
        }
        const std::scoped_lock lock(mutex_);
        if (!waiting_) {
            waiting_ = std::move(content);
        }
    }

    void stopTrying() { retry_.cancel(); }

private:
    // At most one write runs at a time: a disk that hangs blocks one thread, not all of them.
    void request() {
        if (!std::exchange(isRequested_, true) && !isWriting_) {
            start();
        }
    }

    void start() {
        queue_.post([self = shared_from_this()] {
            self->isRequested_ = false;
            self->isWriting_ = true;
            self->queue_.runInBackground([self] { self->write(); },
                                         [self] {
                                             self->isWriting_ = false;
                                             self->finishWrite();
                                         },
                                         Lane::Save);
        });
    }

    void finishWrite() {
        retry_.cancel();
        if (isRequested_) {
            if (!isWriting_) {
                start();
            }
        } else if (!hasWaiting()) {
            pause_ = firstPause;
        } else {
            retry_ = queue_.postAfter(pause_, [weak = weak_from_this()] {
                if (const auto self = weak.lock()) {
                    self->request();
                }
            });
            pause_ = std::min(2 * pause_, longestPause);
        }
    }

    [[nodiscard]] bool hasWaiting() {
        const std::scoped_lock lock(mutex_);
        return waiting_.has_value();
    }

    // False: the file does not hold the content.
    bool replace(const QByteArray& content) {
        // Others may have deleted or changed the file since.
        if (content == held_ && files_.readFile(path_, largest_) == content) {
            return true;
        }
        const FileKind kind = files_.kind(path_);
        if (kind == FileKind::Other) {
            if (!std::exchange(hasLoggedKind_, true)) {
                qCDebug(savingLog) << path_ << "is no regular file: nothing is saved there";
            }
            return false;
        }
        if (!held_ && kind != FileKind::Missing) {
            const bool isSetAside = files_.setAside(path_);
            qCDebug(savingLog) << path_ << (isSetAside ? "is set aside" : "cannot be set aside");
            if (!isSetAside) {
                return false;
            }
        }
        std::error_code error;
        if (!files_.writeAtomically(path_, content, NewFile::UserOnly, error)) {
            qCDebug(savingLog) << path_ << "is not written:" << error.message().c_str();
            return false;
        }
        held_ = content;
        return true;
    }

    MainQueue& queue_;
    FileSystem& files_;
    const QString path_;
    const qint64 largest_;
    std::shared_ptr<Writer> earlier_; // writes its file first

    bool isRequested_ = false;
    bool isWriting_ = false; // in the background
    double pause_ = firstPause;
    DelayedWork retry_;

    std::mutex writeMutex_;          // held while a write is under way; guards held_ and hasLoggedKind_
    std::optional<QByteArray> held_; // the known content of the file; none: unknown
    bool hasLoggedKind_ = false;

    std::mutex mutex_; // guards waiting_
    std::optional<QByteArray> waiting_;
};

WriteBehind::WriteBehind(MainQueue& queue, FileSystem& files, QString path, qint64 largest)
    : writer_(std::make_shared<Writer>(queue, files, std::move(path), largest)) {}

WriteBehind::~WriteBehind() {
    writer_->stopTrying();
}

void WriteBehind::assumeHeld(const QByteArray& content) {
    writer_->assumeHeld(content);
}

void WriteBehind::writeAfter(const WriteBehind& other) {
    writer_->writeAfter(other.writer_);
}

void WriteBehind::save(QByteArray content) {
    writer_->save(std::move(content));
}

void WriteBehind::tryAgain() {
    writer_->tryAgain();
}

void WriteBehind::flush() {
    writer_->write();
}

} // namespace amberquill
