#include "platform/linux/installation/AppImageInstaller.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/FolderReader.h"
#include "platform/linux/installation/ProgramVersion.h"

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(installationLog, "amberquill.installation", QtCriticalMsg)
namespace {

// Variables that the image sets for the program in it, and sets again when it is started again.
constexpr std::array<std::string_view, 4> imageVariables = {"APPIMAGE=", "APPDIR=", "ARGV0=", "OWD="};

QByteArray valueOf(const std::vector<QByteArray>& environment, const QByteArray& name) {
    for (const QByteArray& entry : environment) {
        if (entry.startsWith(name + '=')) {
            return entry.mid(name.size() + 1);
        }
    }
    return {};
}

QByteArray folderOf(const QByteArray& path) {
    return path.left(std::max<qsizetype>(path.lastIndexOf('/'), 1));
}

// The absolute path with all links resolved; empty: `path` is relative or does not exist.
QByteArray resolved(const QByteArray& path) {
    std::array<char, PATH_MAX> target = {};
    const bool exists = path.startsWith('/') && ::realpath(path.constData(), target.data()) != nullptr;
    return exists ? QByteArray(target.data()) : QByteArray();
}

// The mode of the file. None: this user may not replace it.
std::optional<mode_t> modeOfOwnFile(const QByteArray& path) {
    constexpr mode_t permissions = 07777;
    struct stat status = {};
    const bool isOwn = !path.isEmpty() && ::lstat(path.constData(), &status) == 0 &&
                       S_ISREG(status.st_mode) && status.st_uid == ::geteuid() &&
                       ::access(path.constData(), W_OK) == 0 &&
                       ::access(folderOf(path).constData(), W_OK | X_OK) == 0;
    return isOwn ? std::optional(status.st_mode & permissions) : std::nullopt;
}

// The image that this program runs from; empty: none, or it may not be replaced.
QByteArray ownImage(const std::vector<QByteArray>& environment, const QString& program) {
    const QByteArray mount = resolved(valueOf(environment, "APPDIR"));
    QByteArray image = resolved(valueOf(environment, "APPIMAGE"));
    const bool runsFromIt = mount.size() > 1 && program.toUtf8().startsWith(mount + '/');
    return runsFromIt && modeOfOwnFile(image) ? image : QByteArray();
}

// Copies one buffer's worth at most. Zero: the end; negative: an error.
ssize_t copySome(int from, int to, std::vector<char>& buffer) {
    const ssize_t got = ::read(from, buffer.data(), buffer.size());
    for (ssize_t written = 0; written < got;) {
        const ssize_t size = ::write(to, buffer.data() + written, static_cast<std::size_t>(got - written));
        if (size < 0 && errno != EINTR) {
            return -1;
        }
        written += std::max<ssize_t>(size, 0);
    }
    return got < 0 && errno == EINTR ? copySome(from, to, buffer) : got;
}

void flushFolder(const QByteArray& folder) {
    const FileDescriptor opened = openFolder(AT_FDCWD, folder.constData());
    if (opened.isOpen()) {
        static_cast<void>(::fsync(opened.get())); // not every file system can; the file is in place anyway
    }
}

struct SpawnActions {
    SpawnActions() { ::posix_spawn_file_actions_init(&actions); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;
    ~SpawnActions() { ::posix_spawn_file_actions_destroy(&actions); }
    posix_spawn_file_actions_t actions = {};
};

struct SpawnAttributes {
    SpawnAttributes() {
        ::posix_spawnattr_init(&attributes);
        sigset_t signals = {};
        sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes, &signals);
        sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&attributes, &signals);
        ::posix_spawnattr_setflags(&attributes,
                                   POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    ~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes); }
    posix_spawnattr_t attributes = {};
};

} // namespace

InstallKind installKindOf(const QString& program) {
    const auto isBelow = [&program](QLatin1StringView folder) { return program.startsWith(folder); };
    constexpr std::array packaged = {QLatin1StringView("/usr/"), QLatin1StringView("/app/"),
                                     QLatin1StringView("/snap/"), QLatin1StringView("/nix/"),
                                     QLatin1StringView("/gnu/")};
    const bool isPackaged =
        std::any_of(packaged.begin(), packaged.end(), isBelow) && !isBelow(QLatin1StringView("/usr/local/"));
    return isPackaged ? InstallKind::PackageManager : InstallKind::Other;
}

AppImageInstaller::AppImageInstaller(std::vector<QByteArray> environment, const QString& program,
                                     std::function<void(Step)> reached)
    : environment_(std::move(environment))
    , reached_(std::move(reached))
    , image_(ownImage(environment_, program)) {
    kind_ = image_.isEmpty() ? installKindOf(program) : InstallKind::Image;
    // A constant name, so that the next attempt overwrites the file of an interrupted one.
    const qsizetype name = image_.lastIndexOf('/') + 1;
    staged_ = image_.left(name) + '.' + image_.mid(name) + ".update";
    std::erase_if(environment_, [](const QByteArray& entry) {
        return std::any_of(imageVariables.begin(), imageVariables.end(), [&entry](std::string_view variable) {
            return entry.startsWith(QByteArrayView(variable.data(), static_cast<qsizetype>(variable.size())));
        });
    });
}

bool AppImageInstaller::copy(const QByteArray& from) const {
    const auto mode = modeOfOwnFile(image_);
    const FileDescriptor source(::open(from.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    struct stat status = {};
    if (!mode || !source.isOpen() || ::fstat(source.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    ::unlink(staged_.constData());
    constexpr mode_t ownAlone = 0600;
    const FileDescriptor file(
        ::open(staged_.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, ownAlone));
    if (!file.isOpen()) {
        return false;
    }
    reached_(Step::Created);
    constexpr std::size_t bufferBytes = std::size_t{256} * 1024;
    std::vector<char> buffer(bufferBytes);
    off_t copied = 0;
    bool isInFirstHalf = true;
    while (const ssize_t size = copySome(source.get(), file.get(), buffer)) {
        if (size < 0) {
            return false;
        }
        copied += size;
        if (isInFirstHalf && copied * 2 >= status.st_size) {
            isInFirstHalf = false;
            reached_(Step::HalfCopied);
        }
    }
    reached_(Step::Copied);
    const bool isWhole =
        copied == status.st_size && ::fchmod(file.get(), *mode) == 0 && ::fsync(file.get()) == 0;
    reached_(Step::Flushed);
    return isWhole;
}

std::optional<QString> AppImageInstaller::stage(const QString& file) {
    if (image_.isEmpty()) {
        return std::nullopt;
    }
    auto version = copy(file.toUtf8()) ? versionOfProgram(staged_, environment_) : std::nullopt;
    reached_(Step::AskedVersion);
    if (!version) {
        qCDebug(installationLog) << file << "cannot be copied or does not say its version";
        discard();
    }
    return version;
}

bool AppImageInstaller::replace() {
    if (image_.isEmpty() || !modeOfOwnFile(image_) ||
        ::rename(staged_.constData(), image_.constData()) != 0) {
        qCDebug(installationLog) << image_ << "cannot be replaced";
        discard();
        return false;
    }
    reached_(Step::Renamed);
    flushFolder(folderOf(image_));
    return true;
}

void AppImageInstaller::discard() {
    if (!image_.isEmpty()) {
        ::unlink(staged_.constData());
    }
}

// Starts a shell that waits for the end of this process and then starts the image. The shell waits until its
// input closes: only this process holds the other end. The shell does not belong to the old image, which is
// unmounted when this process ends.
bool AppImageInstaller::startAgainAfterExit() {
    std::array<int, 2> ends = {-1, -1};
    if (image_.isEmpty() || ::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return false;
    }
    const FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    SpawnActions actions;
    ::posix_spawn_file_actions_adddup2(&actions.actions, reading.get(), STDIN_FILENO);
    const SpawnAttributes attributes;

    QByteArray shell("/bin/sh");
    QByteArray option("-c");
    QByteArray script("read -r end; exec \"$0\" </dev/null");
    const std::array<char*, 5> arguments = {shell.data(), option.data(), script.data(), image_.data(),
                                            nullptr};
    std::vector<char*> environment;
    for (QByteArray& entry : environment_) {
        environment.push_back(entry.data());
    }
    environment.push_back(nullptr);
    pid_t waiting = -1;
    if (::posix_spawn(&waiting, shell.constData(), &actions.actions, &attributes.attributes, arguments.data(),
                      environment.data()) != 0) {
        return false;
    }
    static_cast<void>(writing.release()); // the end of the process closes it
    return true;
}

} // namespace amberquill::desktop
