#include "platform/linux/files/PosixFileSystem.h"

#include "platform/common/Utf8.h"
#include "platform/linux/files/AtomicWriter.h"
#include "platform/linux/files/FolderReader.h"
#include "platform/linux/files/RegularFile.h"

#include <QSet>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {
namespace {

constexpr qsizetype hiddenListLimit = qsizetype{64} * 1024;

// The names in the folder's `.hidden` file.
QSet<QByteArray> namesInHiddenList(int folder) {
    QByteArray buffer;
    const auto list = readRegularFile(folder, ".hidden", hiddenListLimit, buffer);
    if (!list) {
        return {};
    }
    const QList<QByteArray> lines = list->toByteArray().split('\n');
    return {lines.begin(), lines.end()};
}

struct Listed {
    QByteArray name;
    bool isDirectory;
};

} // namespace

std::optional<std::vector<FolderEntry>> PosixFileSystem::listFolder(const QString& path,
                                                                    std::error_code& error) const {
    if (!isUsablePath(path)) {
        error = std::make_error_code(std::errc::no_such_file_or_directory);
        return std::nullopt;
    }
    FolderReader folder(openFolder(AT_FDCWD, path.toUtf8().constData()));
    if (!folder.isOpen()) {
        error = {errno, std::generic_category()};
        return std::nullopt;
    }
    std::vector<Listed> listed;
    bool hasHiddenList = false;
    while (const auto child = folder.next()) {
        if (child->name[0] == '.') {
            hasHiddenList = hasHiddenList || child->nameView() == ".hidden";
            continue;
        }
        const QByteArray name(child->name);
        if (name.isValidUtf8()) {
            listed.push_back({name, folder.typeOf(*child) == DT_DIR});
        }
    }
    if (folder.failed()) {
        error = std::make_error_code(std::errc::io_error);
        return std::nullopt;
    }
    if (hasHiddenList) {
        const QSet<QByteArray> hidden = namesInHiddenList(folder.descriptor());
        std::erase_if(listed, [&](const Listed& entry) { return hidden.contains(entry.name); });
    }
    std::sort(listed.begin(), listed.end(),
              [](const Listed& left, const Listed& right) { return left.name < right.name; });
    std::vector<FolderEntry> entries;
    entries.reserve(listed.size());
    for (const Listed& entry : listed) {
        entries.push_back({textOfUtf8(entry.name), entry.isDirectory});
    }
    return entries;
}

QString PosixFileSystem::resolvingSymbolicLinks(const QString& path) const {
    if (!isUsablePath(path)) {
        return path;
    }
    struct Free {
        void operator()(char* text) const {
            std::free(text); // NOLINT(cppcoreguidelines-no-malloc): realpath allocates with malloc
        }
    };
    const std::unique_ptr<char, Free> resolved(::realpath(path.toUtf8().constData(), nullptr));
    if (!resolved || !QByteArrayView(resolved.get()).isValidUtf8()) {
        return path;
    }
    return textOfUtf8(resolved.get());
}

QString PosixFileSystem::displayName(const QString& path) const {
    QStringView name(path);
    while (name.size() > 1 && name.endsWith(QLatin1Char('/'))) {
        name.chop(1);
    }
    return name.size() > 1 ? name.mid(name.lastIndexOf(QLatin1Char('/')) + 1).toString() : name.toString();
}

std::optional<QByteArray> PosixFileSystem::readFile(const QString& path, qint64 limit,
                                                    std::error_code& error) const {
    if (!isUsablePath(path)) {
        error = std::make_error_code(std::errc::no_such_file_or_directory);
        return std::nullopt;
    }
    QByteArray buffer;
    const auto content = readRegularFile(AT_FDCWD, path.toUtf8().constData(), limit, buffer);
    if (!content) {
        error = {errno, std::generic_category()};
        return std::nullopt;
    }
    buffer.truncate(content->size());
    return buffer;
}

FileKind PosixFileSystem::kind(const QString& path) const {
    struct stat status = {};
    if (!isUsablePath(path)) {
        return FileKind::Unknown;
    }
    if (::stat(path.toUtf8().constData(), &status) == 0) {
        return S_ISREG(status.st_mode) ? FileKind::Regular : FileKind::Other;
    }
    return errno == ENOENT ? FileKind::Missing : FileKind::Unknown;
}

std::optional<qint64> PosixFileSystem::fileSize(const QString& path) const {
    struct stat status = {};
    if (!isUsablePath(path) || ::stat(path.toUtf8().constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return status.st_size;
}

bool PosixFileSystem::writeAtomically(const QString& path, const QByteArray& content, NewFile newFile,
                                      std::error_code& error) {
    const std::error_code failure = isUsablePath(path)
                                        ? replaceFile(path.toUtf8(), content, newFile)
                                        : std::make_error_code(std::errc::no_such_file_or_directory);
    if (failure) {
        error = failure;
    }
    return !failure;
}

bool PosixFileSystem::setAside(const QString& path) {
    return isUsablePath(path) && renameToFreeName(path.toUtf8());
}

bool PosixFileSystem::remove(const QString& path) {
    return isUsablePath(path) && ::unlink(path.toUtf8().constData()) == 0;
}

} // namespace amberquill::desktop
