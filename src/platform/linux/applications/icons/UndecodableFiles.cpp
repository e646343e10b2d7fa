#include "platform/linux/applications/icons/UndecodableFiles.h"

#include "platform/linux/files/AtomicWriter.h"
#include "platform/linux/files/RegularFile.h"

#include <fcntl.h>
#include <filesystem>

namespace amberquill::desktop {

namespace {

// Where versions before this one noted what they were decoding.
void removeFormerNotes(const std::filesystem::path& file) {
    std::error_code ignored;
    std::filesystem::remove_all(file.parent_path() / "decoding", ignored);
}

} // namespace

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
    const std::lock_guard writing(writing_);
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
    const auto text = readRegularFile(AT_FDCWD, path_.c_str(), UndecodableList::mostBytes, buffer);
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
