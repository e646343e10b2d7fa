#include "platform/linux/files/WatchWalk.h"

#include "platform/linux/files/FolderReader.h"

#include <array>
#include <cerrno>
#include <climits>
#include <deque>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace amberquill::desktop {
namespace {

constexpr std::uint32_t comingAndGoing =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr std::uint32_t everyChange = comingAndGoing | IN_CLOSE_WRITE | IN_ATTRIB | IN_EXCL_UNLINK;

QByteArray below(const QByteArray& folder, const QByteArray& name) {
    return folder == "/" ? folder + name : folder + '/' + name;
}

std::deque<QByteArray> components(const QByteArray& path) {
    std::deque<QByteArray> parts;
    for (const QByteArray& part : path.split('/')) {
        if (!part.isEmpty() && part != ".") {
            parts.push_back(part);
        }
    }
    return parts;
}

std::optional<QByteArray> linkText(const QByteArray& path) {
    std::array<char, PATH_MAX> target = {};
    const ssize_t size = ::readlink(path.constData(), target.data(), target.size());
    if (size < 0) {
        return std::nullopt;
    }
    return QByteArray(target.data(), size);
}

bool isLater(const timespec& left, const timespec& right) {
    return left.tv_sec != right.tv_sec ? left.tv_sec > right.tv_sec : left.tv_nsec > right.tv_nsec;
}

class Walk {
public:
    // Watches an existing folder and returns the watch descriptor, negative if that fails.
    using Watch = std::function<int(const QByteArray& path, std::uint32_t changes)>;

    Walk(Watch watch, timespec since)
        : watch_(std::move(watch))
        , since_(since) {}

    void addRoot(const QByteArray& root) {
        const auto folder = root.isEmpty() ? std::nullopt : findRoot(root);
        struct stat status = {};
        if (folder && ::stat(folder->constData(), &status) == 0 && S_ISDIR(status.st_mode)) {
            found_.roots.push_back({status.st_dev, status.st_ino});
            waiting_.push_back({*folder, 0});
        } else {
            found_.roots.push_back({});
        }
    }

    WatchedFolders run() && {
        // Level by level over all roots, so that a huge root does not use up the watches of the others.
        while (!waiting_.empty()) {
            const Level level = std::move(waiting_.front());
            waiting_.pop_front();
            enter(level);
        }
        return std::move(found_);
    }

private:
    struct Level {
        QByteArray path;
        int depth;
    };

    // Watches the folder and returns its entry. Null: it cannot be watched.
    WatchedFolder* add(const QByteArray& path, std::uint32_t changes) {
        if (found_.byWatch.size() >= maximumWatches) {
            return nullptr;
        }
        const int watch = watch_(path, changes);
        return watch < 0 ? nullptr : &found_.byWatch[watch];
    }

    void await(const QByteArray& folder, const QByteArray& name) {
        if (WatchedFolder* const watched = add(folder, comingAndGoing)) {
            watched->awaited.insert(name);
        }
    }

    // Resolves the root's path component by component, because each symbolic link on it has to be watched.
    // None: the root does not exist yet, and is awaited.
    std::optional<QByteArray> findRoot(const QByteArray& root) {
        std::deque<QByteArray> rest = components(root);
        QByteArray folder("/");
        for (int links = 0; !rest.empty();) {
            const QByteArray name = rest.front();
            const QByteArray next = below(folder, name);
            struct stat status = {};
            if (::lstat(next.constData(), &status) != 0 || !S_ISDIR(status.st_mode)) {
                await(folder, name);
                // The component may have been created or replaced before the watch was added.
                if (::lstat(next.constData(), &status) != 0) {
                    return std::nullopt;
                }
            }
            rest.pop_front();
            if (S_ISDIR(status.st_mode)) {
                folder = next;
                continue;
            }
            const auto target = linkText(next); // none: neither a folder nor a symbolic link
            if (!target || ++links > maximumLinksOnTheWayToARoot) {
                return std::nullopt;
            }
            const std::deque<QByteArray> way = components(*target);
            rest.insert(rest.begin(), way.begin(), way.end());
            if (target->startsWith('/')) {
                folder = "/";
            }
        }
        return folder;
    }

    void enter(const Level& level) {
        WatchedFolder* const watched = add(level.path, everyChange | IN_DONT_FOLLOW);
        if (watched == nullptr || std::exchange(watched->belowRoot, true)) {
            return;
        }
        FolderReader folder(openFolder(AT_FDCWD, level.path.constData(), O_NOFOLLOW));
        if (!folder.isOpen()) {
            return;
        }
        struct stat status = {};
        if (::fstat(folder.descriptor(), &status) == 0 && isLater(status.st_mtim, since_)) {
            found_.modifiedMeanwhile = true;
        }
        if (level.depth == maximumWatchDepth) {
            return;
        }
        while (const auto child = folder.next()) {
            if (folder.typeOf(*child) != DT_DIR) {
                continue;
            }
            if (waiting_.size() + found_.byWatch.size() >= maximumWatches) {
                return;
            }
            waiting_.push_back({below(level.path, child->name), level.depth + 1});
        }
    }

    Watch watch_;
    timespec since_;
    WatchedFolders found_;
    std::deque<Level> waiting_;
};

} // namespace

WatchedFolders watchFolders(const FileDescriptor& inotify, const QByteArrayList& roots, timespec since) {
    Walk walk(
        [&inotify](const QByteArray& path, std::uint32_t changes) {
            return ::inotify_add_watch(inotify.get(), path.constData(), changes | IN_ONLYDIR | IN_MASK_ADD);
        },
        since);
    for (const QByteArray& root : roots) {
        walk.addRoot(root);
    }
    return std::move(walk).run();
}

void visitFolders(const QByteArray& root, const std::function<void()>& goOn) {
    int visited = 0;
    Walk walk(
        [&](const QByteArray&, std::uint32_t) {
            goOn();
            return ++visited;
        },
        {});
    walk.addRoot(root);
    std::ignore = std::move(walk).run();
}

} // namespace amberquill::desktop
