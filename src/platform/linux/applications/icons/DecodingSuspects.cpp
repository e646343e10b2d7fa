#include "platform/linux/applications/icons/DecodingSuspects.h"

#include <QList>

namespace amberquill::desktop {

namespace {

constexpr std::size_t maximumSuspects = 256;
constexpr QByteArrayView guiltyWord = "guilty";
constexpr QByteArrayView suspectWord = "suspect";

} // namespace

DecodingSuspects::Standing DecodingSuspects::standing(const FileState& file) const {
    const auto found = suspects_.find(file.path);
    if (found == suspects_.end() || found->second.file != file) {
        return Standing::Clear;
    }
    return found->second.isGuilty ? Standing::Guilty : Standing::Suspect;
}

void DecodingSuspects::addDeath(const std::vector<FileState>& notes) {
    for (const auto& file : notes) {
        if (suspects_.size() >= maximumSuspects && !suspects_.contains(file.path)) {
            continue;
        }
        const bool isGuilty = notes.size() == 1 || standing(file) != Standing::Clear;
        suspects_[file.path] = {.file = file, .isGuilty = isGuilty};
    }
}

bool DecodingSuspects::clear(const std::string& path) {
    return suspects_.erase(path) > 0;
}

QByteArray DecodingSuspects::written() const {
    QByteArray text;
    for (const auto& [path, suspect] : suspects_) {
        text += suspect.isGuilty ? guiltyWord : suspectWord;
        text += ' ' + QByteArray::number(qlonglong{suspect.file.modified});
        text += ' ' + QByteArray::number(qlonglong{suspect.file.size});
        text += ' ' + QByteArray::fromStdString(path).toPercentEncoding("/") + '\n';
    }
    return text;
}

DecodingSuspects DecodingSuspects::read(QByteArrayView text) {
    DecodingSuspects result;
    for (const auto& line : text.toByteArray().split('\n')) {
        const auto words = line.split(' ');
        bool isModified = false;
        bool isSize = false;
        if (words.size() != 4 || (words[0] != guiltyWord && words[0] != suspectWord) ||
            result.suspects_.size() >= maximumSuspects) {
            continue;
        }
        const FileState file{.path = QByteArray::fromPercentEncoding(words[3]).toStdString(),
                             .modified = words[1].toLongLong(&isModified),
                             .size = words[2].toLongLong(&isSize)};
        if (isModified && isSize && file.path.starts_with('/')) {
            result.suspects_[file.path] = {.file = file, .isGuilty = words[0] == guiltyWord};
        }
    }
    return result;
}

} // namespace amberquill::desktop
