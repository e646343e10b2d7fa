#include "platform/linux/files/AtomicWriter.h"

#include "platform/linux/files/FolderReader.h"

#include <QRandomGenerator>
#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {
namespace {

using namespace std::string_view_literals;

constexpr mode_t folderMode = 0700;
constexpr mode_t privateMode = 0600;
constexpr mode_t sharedMode = 0666; // without the umask's bits
constexpr int maximumLinks = 40;    // as many as the kernel follows
constexpr int maximumSetAside = 999;

QByteArray folderOf(const QByteArray& path) {
    const qsizetype slash = path.lastIndexOf('/');
    return slash <= 0 ? QByteArray("/") : path.left(slash);
}

// The target of a chain of symbolic links, whether or not it exists; `path` itself if it is no link. None:
// the links form a loop.
std::optional<QByteArray> linkTarget(QByteArray path) {
    for (int links = 0; links <= maximumLinks; ++links) {
        std::array<char, PATH_MAX> target = {};
        const ssize_t size = ::readlink(path.constData(), target.data(), target.size());
        if (size < 0) {
            return path; // no link, or missing
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

// False: errno is set.
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
    // Another process may have made it at the same time.
    const bool exists = isFolder(path);
    errno = ENOTDIR;
    return exists;
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

// Writes the names in a folder to the disk. A failure changes nothing: the file has been replaced.
void flushFolder(const QByteArray& folder) {
    const FileDescriptor opened = openFolder(AT_FDCWD, folder.constData());
    if (opened.isOpen()) {
        static_cast<void>(::fsync(opened.get()));
    }
}

// The error of the last system call.
std::error_code lastError() {
    return {errno, std::generic_category()};
}

// Renames without replacing a file. False with EEXIST: the name is taken.
bool renameWithoutReplacing(const QByteArray& from, const QByteArray& to) {
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    // The file system has no such rename. A hard link does not replace a file either.
    return ::link(from.constData(), to.constData()) == 0 && ::unlink(from.constData()) == 0;
}

constexpr auto temporaryPrefix = ".amberquill-"sv;
constexpr std::size_t randomDigits = 16;
constexpr int mostAttempts = 100;
constexpr int mostNamesLookedAt = 100'000;

bool isHexDigit(char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'f');
}

bool isLowerCaseLetter(char byte) {
    return byte >= 'a' && byte <= 'z';
}

bool isLetterOrDigit(char byte) {
    return isLowerCaseLetter(byte) || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z');
}

bool isTemporaryName(std::string_view name) {
    if (!name.starts_with(temporaryPrefix)) {
        return false;
    }
    const std::string_view rest = name.substr(temporaryPrefix.size());
    if (rest.size() == randomDigits) {
        return std::all_of(rest.begin(), rest.end(), isHexDigit);
    }
    // Version 0.1.0 used six random letters and digits. Six small letters may be a word in a user's file
    // name, so those files are kept.
    constexpr std::size_t olderDigits = 6;
    return rest.size() == olderDigits && std::all_of(rest.begin(), rest.end(), isLetterOrDigit) &&
           !std::all_of(rest.begin(), rest.end(), isLowerCaseLetter);
}

QByteArray temporaryName() {
    const QByteArray digits = QByteArray::number(QRandomGenerator::system()->generate64(), 16);
    return QByteArray(temporaryPrefix.data(), temporaryPrefix.size()) +
           digits.rightJustified(static_cast<qsizetype>(randomDigits), '0');
}

// Whether no process writes this file. Takes its lock, which lasts until the file is closed.
bool isLeftOver(int file) {
    struct stat status = {};
    return ::flock(file, LOCK_EX | LOCK_NB) == 0 && ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == ::geteuid() && status.st_nlink == 1;
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
    // Others must not read the content before the old file's mode is set.
    auto temporary =
        makeTemporaryFile(folder, newFile == NewFile::ByUmask && !replaces ? sharedMode : privateMode);
    if (!temporary) {
        return lastError();
    }
    const int file = temporary->file.get();
    constexpr mode_t permissions = 07777;
    // The file stays open, and therefore locked, until it is renamed.
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

std::optional<TemporaryFile> makeTemporaryFile(const QByteArray& folder, mode_t mode) {
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        TemporaryFile made{folder + '/' + temporaryName(), {}};
        made.file =
            FileDescriptor(::open(made.path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (!made.file.isOpen()) {
            if (errno == EEXIST) {
                continue;
            }
            return std::nullopt;
        }
        // Before the lock, another process may remove the file as a leftover. On file systems without locks
        // no leftovers are removed.
        static_cast<void>(::flock(made.file.get(), LOCK_EX));
        struct stat status = {};
        if (::fstat(made.file.get(), &status) == 0 && status.st_nlink > 0) {
            return made;
        }
    }
    errno = EEXIST;
    return std::nullopt;
}

void removeLeftoverFiles(const QByteArray& folder) {
    FolderReader reader(openFolder(AT_FDCWD, folder.constData()));
    if (!reader.isOpen()) {
        return;
    }
    for (int looked = 0; looked < mostNamesLookedAt; ++looked) {
        const auto child = reader.next();
        if (!child) {
            return;
        }
        if (!isTemporaryName(child->nameView()) || reader.typeOf(*child) != DT_REG) {
            continue;
        }
        const FileDescriptor file(
            ::openat(reader.descriptor(), child->name, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
        if (file.isOpen() && isLeftOver(file.get())) {
            ::unlinkat(reader.descriptor(), child->name, 0);
        }
    }
}

} // namespace amberquill::desktop
