#include "platform/linux/files/TemporaryFile.h"

#include "platform/linux/files/FolderReader.h"

#include <QRandomGenerator>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {
namespace {

using namespace std::string_view_literals;

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
    // The six random characters of version 0.1.0. Six small letters may be a word of the user's own.
    constexpr std::size_t olderDigits = 6;
    return rest.size() == olderDigits && std::all_of(rest.begin(), rest.end(), isLetterOrDigit) &&
           !std::all_of(rest.begin(), rest.end(), isLowerCaseLetter);
}

QByteArray temporaryName() {
    const QByteArray digits = QByteArray::number(QRandomGenerator::system()->generate64(), 16);
    return QByteArray(temporaryPrefix.data(), temporaryPrefix.size()) +
           digits.rightJustified(static_cast<qsizetype>(randomDigits), '0');
}

// Whether no process writes this file: the lock is then taken, and given back when the file is closed.
bool isLeftOver(int file) {
    struct stat status = {};
    return ::flock(file, LOCK_EX | LOCK_NB) == 0 && ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == ::geteuid() && status.st_nlink == 1;
}

} // namespace

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
        // A start may have taken it for a left-over file before it was locked. Some file systems have no
        // locks: there nothing is removed.
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
