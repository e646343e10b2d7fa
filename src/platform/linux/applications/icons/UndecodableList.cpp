#include "platform/linux/applications/icons/UndecodableList.h"

#include <QList>
#include <algorithm>
#include <optional>

namespace amberquill::desktop {

namespace {

constexpr std::size_t longestPath = 4096; // bytes; no file has a longer one

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

} // namespace

bool UndecodableList::contains(const FileState& file) const {
    return std::find(files_.begin(), files_.end(), file) != files_.end();
}

void UndecodableList::put(const FileState& file) {
    if (file.path.size() > longestPath) {
        return;
    }
    std::erase_if(files_, [&file](const FileState& other) { return other.path == file.path; });
    if (files_.size() >= mostFiles) {
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
    while (heading.size() + lines.size() > mostBytes) {
        lines.remove(0, lines.indexOf('\n') + 1);
    }
    return heading + lines;
}

UndecodableList UndecodableList::read(QByteArrayView text, const std::string& version) {
    UndecodableList list;
    const auto heading = headingOf(version);
    if (text.size() > mostBytes || !text.startsWith(heading)) {
        return list;
    }
    for (const auto& line : text.sliced(heading.size()).toByteArray().split('\n')) {
        if (const auto file = fileOf(line)) {
            list.put(*file);
        }
    }
    return list;
}

} // namespace amberquill::desktop
