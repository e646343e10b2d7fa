#include "platform/linux/files/AtomicWriter.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/FolderReader.h"
#include "platform/linux/files/TemporaryFile.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {
namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t privateMode = 0600;
constexpr mode_t sharedMode = 0666; // less what the umask takes
constexpr int maximumLinks = 40;    // as many as the system itself follows
constexpr int maximumSetAside = 999;

QByteArray folderOf(const QByteArray& path) {
    const qsizetype slash = path.lastIndexOf('/');
    return slash <= 0 ? QByteArray("/") : path.left(slash);
}

// Where `path` leads when it is a symbolic link, whether or not anything is there; itself when it is none.
// None: the links do not end.
std::optional<QByteArray> linkTarget(QByteArray path) {
    for (int links = 0; links <= maximumLinks; ++links) {
        std::array<char, PATH_MAX> target = {};
        const ssize_t size = ::readlink(path.constData(), target.data(), target.size());
        if (size < 0) {
            return path; // not a link, or not there
        }
        const QByteArray next(target.data(), size);
        path = next.startsWith('/') ? next : folderOf(path) + '/' + next;
    }
    return std::nullopt;
}

bool isFolder(const QByteArray& path) {
    struct stat status = {};
    return ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

// False: errno says why not.
bool makeFolders(const QByteArray& path) {
    if (isFolder(path)) {
        return true;
    }
    if (path.size() <= 1 || !makeFolders(folderOf(path))) {
        return false;
    }
    if (::mkdir(path.constData(), folderMode) == 0) {
        return true;
    }
    if (errno != EEXIST) {
        return false;
    }
    // Somebody else may have made it at the same time: what counts is that it is there.
    const bool isThere = isFolder(path);
    errno = ENOTDIR;
    return isThere;
}

bool writeAll(int file, const QByteArray& content) {
    for (qsizetype written = 0; written < content.size();) {
        const ssize_t size =
            ::write(file, content.constData() + written, static_cast<std::size_t>(content.size() - written));
        if (size < 0 && errno != EINTR) {
            return false;
        }
        written += std::max<ssize_t>(size, 0);
    }
    return true;
}

// The names in a folder are on the disk. Some file systems cannot promise that; the file is in place all the
// same.
void flushFolder(const QByteArray& folder) {
    const FileDescriptor opened = openFolder(AT_FDCWD, folder.constData());
    if (opened.isOpen()) {
        static_cast<void>(::fsync(opened.get()));
    }
}

// Why the last call of the system's failed.
std::error_code lastError() {
    return {errno, std::generic_category()};
}

// Renames without ever replacing a file: false with EEXIST where the name is taken.
bool renameWithoutReplacing(const QByteArray& from, const QByteArray& to) {
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    // A file system that cannot: a second name takes no other file's place either.
    return ::link(from.constData(), to.constData()) == 0 && ::unlink(from.constData()) == 0;
}

} // namespace

bool isUsablePath(const QString& path) {
    return path.startsWith(QLatin1Char('/')) && !path.contains(QChar::Null);
}

std::error_code replaceFile(const QByteArray& path, const QByteArray& content, NewFile newFile) {
    const auto target = linkTarget(path);
    if (!target) {
        return std::make_error_code(std::errc::too_many_symbolic_link_levels);
    }
    struct stat old = {};
    const bool replaces = ::stat(target->constData(), &old) == 0;
    if (target->endsWith('/') || (replaces && S_ISDIR(old.st_mode))) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    if (replaces && !S_ISREG(old.st_mode)) {
        return std::make_error_code(std::errc::invalid_argument);
    }
    const QByteArray folder = folderOf(*target);
    if (!makeFolders(folder)) {
        return lastError();
    }
    // Until it takes the place of a file that others may not read, they cannot read this one either.
    auto temporary =
        makeTemporaryFile(folder, newFile == NewFile::ByUmask && !replaces ? sharedMode : privateMode);
    if (!temporary) {
        return lastError();
    }
    const int file = temporary->file.get();
    constexpr mode_t permissions = 07777;
    // It stays open, and so locked, until it has its name.
    if (!writeAll(file, content) || (replaces && ::fchmod(file, old.st_mode & permissions) != 0) ||
        ::fsync(file) != 0 || ::rename(temporary->path.constData(), target->constData()) != 0) {
        const std::error_code error = lastError();
        ::unlink(temporary->path.constData());
        return error;
    }
    temporary->file.close();
    flushFolder(folder);
    return {};
}

bool renameToFreeName(const QByteArray& path) {
    const auto target = linkTarget(path);
    struct stat status = {};
    if (!target || ::stat(target->constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    for (int number = 1; number <= maximumSetAside; ++number) {
        if (renameWithoutReplacing(*target, *target + ".unreadable-" + QByteArray::number(number))) {
            flushFolder(folderOf(*target));
            return true;
        }
        if (errno != EEXIST) {
            return false;
        }
    }
    return false;
}

} // namespace amberquill::desktop
