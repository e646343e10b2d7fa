#include "platform/linux/files/InotifyFolderWatcher.h"

#include "platform/common/RootReaders.h"
#include "platform/linux/files/WatchWalk.h"

#include <QFile>
#include <QLoggingCategory>
#include <QSocketNotifier>
#include <array>
#include <sys/inotify.h>

namespace amberquill::desktop {
namespace {

Q_LOGGING_CATEGORY(watcherLog, "amberquill.files", QtCriticalMsg)

// Tolerance in seconds for the rounding of deadlines, which are sums of decimals.
constexpr double rounding = 0.5e-6;

timespec systemTime() {
    timespec time = {};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return time;
}

// The roots in their order; empty in place of a root that does not answer.
QByteArrayList respondingRoots(const QByteArrayList& roots, RootReaders* readers) {
    if (readers == nullptr) {
        return roots;
    }
    QStringList paths;
    for (const QByteArray& root : roots) {
        paths.append(QFile::decodeName(root));
    }
    const auto visits = readers->readAll<bool>(QStringLiteral("watched folders"), paths,
                                               [](const QString& root, const RootReaders::GoOn& goOn) {
                                                   visitFolders(QFile::encodeName(root), goOn);
                                                   return true;
                                               });
    QByteArrayList result = roots;
    for (std::size_t i = 0; i < visits.size(); ++i) {
        if (visits[i] == nullptr) {
            result[static_cast<qsizetype>(i)].clear();
        }
    }
    return result;
}

} // namespace

// One call of `watch`. The next call destroys it, possibly from within its own `changed`.
class InotifyFolderWatcher::Watching {
public:
    Watching(MainQueue& queue, RootReaders* readers, const QStringList& folders,
             std::function<void()> changed)
        : queue_(queue)
        , readers_(readers)
        , inotify_(std::make_shared<FileDescriptor>(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)))
        , changed_(std::move(changed))
        , started_(systemTime()) {
        for (const QString& folder : folders) {
            if (folder.startsWith(QLatin1Char('/'))) {
                roots_.append(folder.toUtf8());
            }
        }
    }

    void start() {
        if (!inotify_->isOpen()) {
            qCDebug(watcherLog) << "inotify is not available: no folder is watched";
            return;
        }
        notifier_ = std::make_unique<QSocketNotifier>(inotify_->get(), QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                         [this] { readEvents(); });
        walk();
    }

private:
    void walk() {
        walking_ = true;
        namesMoved_ = false;
        queue_.compute(
            context_,
            [inotify = inotify_, roots = roots_, readers = readers_, since = started_] {
                return watchFolders(*inotify, respondingRoots(roots, readers), since);
            },
            [this](WatchedFolders&& found) { adopt(std::move(found)); });
    }

    void adopt(WatchedFolders&& found) {
        for (const auto& [watch, folder] : folders_.byWatch) {
            if (!found.byWatch.contains(watch)) {
                ::inotify_rm_watch(inotify_->get(), watch);
            }
        }
        const bool first = std::exchange(isFirstWalk_, false);
        const bool rootsMoved = found.roots != folders_.roots;
        const bool isQuiet = std::exchange(isQuietAfterWalk_, false);
        folders_ = std::move(found);
        walking_ = false;
        qCDebug(watcherLog) << folders_.byWatch.size() << "folders are watched";
        if (first) {
            if (folders_.modifiedMeanwhile) {
                filesChanged_ = true;
                noteChange();
            }
        } else if (rootsMoved || filesChanged_) {
            // A folder created during this walk is not watched yet: report again after the next walk.
            filesChanged_ = namesMoved_;
            if (isQuiet && namesMoved_) {
                walk();
            }
            report();
            return;
        }
        if (isQuiet) {
            settle();
        }
    }

    void readEvents() {
        constexpr std::size_t bufferSize = std::size_t{64} * 1024;
        constexpr int atOnce = 16; // the rest is read in the next turn of the event loop
        alignas(inotify_event) std::array<char, bufferSize> buffer; // NOLINT: filled by read
        for (int round = 0; round < atOnce; ++round) {
            const ssize_t size = ::read(inotify_->get(), buffer.data(), buffer.size());
            if (size <= 0) {
                return;
            }
            for (const char* at = buffer.data(); at < buffer.data() + size;) {
                const auto* const event = reinterpret_cast<const inotify_event*>(at);
                judge(*event);
                at += sizeof(inotify_event) + event->len;
            }
        }
    }

    void judge(const inotify_event& event) {
        if ((event.mask & IN_Q_OVERFLOW) != 0) {
            // Events were lost: anything may have changed.
            namesMoved_ = true;
            filesChanged_ = true;
            noteChange();
            return;
        }
        const auto known = folders_.byWatch.find(event.wd);
        if (known == folders_.byWatch.end()) {
            // An event of a watch that the current walk has just added. IN_IGNORED alone means that a watch
            // was removed.
            if ((event.mask & IN_IGNORED) == 0 && walking_) {
                namesMoved_ = true;
                filesChanged_ = true;
                noteChange();
            }
            return;
        }
        const bool isGone = (event.mask & (IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT)) != 0;
        const bool isFolder = (event.mask & IN_ISDIR) != 0;
        const bool isAwaited = event.len > 0 && known->second.awaited.contains(&event.name[0]);
        const bool counts = known->second.belowRoot;
        if (!counts && !isGone && !isAwaited) {
            return;
        }
        namesMoved_ = namesMoved_ || isGone || isFolder || isAwaited;
        filesChanged_ = filesChanged_ || counts;
        if ((event.mask & IN_IGNORED) != 0) {
            folders_.byWatch.erase(known);
        }
        noteChange();
    }

    void noteChange() {
        lastChange_ = queue_.now();
        if (!waits_) {
            firstChange_ = lastChange_;
            waitFor(quietSeconds);
        }
    }

    // One timer at a time: it is extended when it fires while changes still come.
    void waitFor(double seconds) {
        waits_ = true;
        wake_ = queue_.postAfter(seconds, [this] { wake(); });
    }

    void wake() {
        const double due = std::min(lastChange_ + quietSeconds, firstChange_ + patienceSeconds);
        const double left = due - queue_.now();
        if (left > rounding) {
            waitFor(left);
            return;
        }
        waits_ = false;
        settle();
    }

    // The changes are over. If folders were created or removed, the watches are renewed before `changed` is
    // called, so that `changed` sees what happened in a new folder before it was watched.
    void settle() {
        if (walking_) {
            isQuietAfterWalk_ = true;
        } else if (namesMoved_) {
            walk();
        } else if (filesChanged_) {
            filesChanged_ = false;
            report();
        }
    }

    // Callers do nothing after this: `changed` may watch other folders, which destroys this object.
    void report() {
        const auto changed = changed_;
        changed();
    }

    MainQueue& queue_;
    RootReaders* readers_;
    std::shared_ptr<FileDescriptor> inotify_; // shared with the current walk
    QByteArrayList roots_;
    std::function<void()> changed_;
    timespec started_;
    std::unique_ptr<QSocketNotifier> notifier_; // destroyed before the descriptor

    WatchedFolders folders_;
    bool isFirstWalk_ = true;
    bool walking_ = false;
    bool isQuietAfterWalk_ = false; // the changes ended during a walk
    bool namesMoved_ = false;       // folders were created or removed: the watches are outdated
    bool filesChanged_ = false;     // something at or below a root changed
    bool waits_ = false;
    double firstChange_ = 0; // of the changes not yet reported
    double lastChange_ = 0;
    DelayedWork wake_;
    Context context_;
};

InotifyFolderWatcher::InotifyFolderWatcher(MainQueue& queue, RootReaders* readers)
    : queue_(queue)
    , readers_(readers) {}

InotifyFolderWatcher::~InotifyFolderWatcher() = default;

void InotifyFolderWatcher::watch(const QStringList& folders, std::function<void()> changed) {
    watching_ = std::make_unique<Watching>(queue_, readers_, folders, std::move(changed));
    watching_->start();
}

} // namespace amberquill::desktop
