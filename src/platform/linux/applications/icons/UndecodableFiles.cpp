#include "platform/linux/applications/icons/UndecodableFiles.h"

#include "platform/linux/files/AtomicWriter.h"
#include "platform/linux/files/RegularFile.h"

#include <QList>
#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>

namespace amberquill::desktop {

namespace {

constexpr std::size_t maximumPathBytes = 4096; // as long as the system allows

QByteArray headingOf(const std::string& version) {
    return "Amberquill undecodable icons 1, version " + QByteArray::fromStdString(version) + '\n';
}

QByteArray lineOf(const FileState& file) {
    return QByteArray::number(qlonglong{file.modified}) + ' ' + QByteArray::number(qlonglong{file.size}) +
           ' ' + QByteArray::fromStdString(file.path).toPercentEncoding("/") + '\n';
}

std::optional<FileState> fileOf(const QByteArray& line) {
    const auto words = line.split(' ');
    if (words.size() != 3) {
        return std::nullopt;
    }
    bool isModified = false;
    bool isSize = false;
    FileState file{.path = QByteArray::fromPercentEncoding(words[2]).toStdString(),
                   .modified = words[0].toLongLong(&isModified),
                   .size = words[1].toLongLong(&isSize)};
    return isModified && isSize && file.path.starts_with('/') ? std::optional(std::move(file)) : std::nullopt;
}

// Earlier versions noted in this folder what they were decoding.
void removeFormerNotes(const std::filesystem::path& file) {
    std::error_code ignored;
    std::filesystem::remove_all(file.parent_path() / "decoding", ignored);
}

} // namespace

std::optional<FileState> fileState(const FileDescriptor& file, const std::string& path) {
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    return FileState{.path = path,
                     .modified = status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec,
                     .size = status.st_size};
}

bool UndecodableList::contains(const FileState& file) const {
    return std::find(files_.begin(), files_.end(), file) != files_.end();
}

void UndecodableList::put(const FileState& file) {
    if (file.path.size() > maximumPathBytes) {
        return;
    }
    std::erase_if(files_, [&file](const FileState& other) { return other.path == file.path; });
    if (files_.size() >= maximumFiles) {
        files_.erase(files_.begin());
    }
    files_.push_back(file);
}

void UndecodableList::put(const UndecodableList& others) {
    for (const auto& file : others.files_) {
        put(file);
    }
}

QByteArray UndecodableList::written(const std::string& version) const {
    const auto heading = headingOf(version);
    QByteArray lines;
    for (const auto& file : files_) {
        lines += lineOf(file);
    }
    while (heading.size() + lines.size() > maximumBytes) {
        lines.remove(0, lines.indexOf('\n') + 1);
    }
    return heading + lines;
}

UndecodableList UndecodableList::read(QByteArrayView text, const std::string& version) {
    UndecodableList list;
    const auto heading = headingOf(version);
    if (text.size() > maximumBytes || !text.startsWith(heading)) {
        return list;
    }
    for (const auto& line : text.sliced(heading.size()).toByteArray().split('\n')) {
        if (const auto file = fileOf(line)) {
            list.put(*file);
        }
    }
    return list;
}

UndecodableFiles::UndecodableFiles(std::string path, std::string version)
    : path_(std::move(path))
    , version_(std::move(version)) {}

bool UndecodableFiles::contains(const FileState& file) {
    readOnce();
    const std::lock_guard lock(mutex_);
    return list_.contains(file);
}

void UndecodableFiles::add(const FileState& file) {
    readOnce();
    {
        const std::lock_guard lock(mutex_);
        list_.put(file);
    }
    const std::lock_guard writing(writingMutex_);
    auto all = read(); // another process may have added to it
    {
        const std::lock_guard lock(mutex_);
        all.put(list_);
        list_ = all;
    }
    static_cast<void>(replaceFile(QByteArray::fromStdString(path_), all.written(version_)));
}

UndecodableList UndecodableFiles::read() const {
    QByteArray buffer;
    const auto text = readRegularFile(AT_FDCWD, path_.c_str(), UndecodableList::maximumBytes, buffer);
    return text ? UndecodableList::read(*text, version_) : UndecodableList();
}

void UndecodableFiles::readOnce() {
    std::call_once(isRead_, [this] {
        removeFormerNotes(path_);
        auto list = read();
        const std::lock_guard lock(mutex_);
        list_ = std::move(list);
    });
}

} // namespace amberquill::desktop
