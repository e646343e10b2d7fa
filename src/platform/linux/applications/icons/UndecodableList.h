#pragma once

#include "platform/linux/applications/icons/FileState.h"

#include <QByteArray>
#include <QByteArrayView>
#include <string>
#include <vector>

namespace amberquill::desktop {

// The files that a version of the program could not decode, as a small text file: a heading, and a line for
// each, the newest last. There are never too many of them: the oldest go.
class UndecodableList {
public:
    static constexpr std::size_t mostFiles = 256;
    static constexpr qsizetype mostBytes = qsizetype{1024} * 1024; // of the text

    // A file that has changed since is not in it.
    [[nodiscard]] bool contains(const FileState& file) const;

    // As the newest, in the place of what was known of its path.
    void put(const FileState& file);
    void put(const UndecodableList& others);

    [[nodiscard]] QByteArray written(const std::string& version) const;
    // Lines that make no sense are left out. Another version's list is empty: this one may do better.
    [[nodiscard]] static UndecodableList read(QByteArrayView text, const std::string& version);

private:
    std::vector<FileState> files_; // the oldest first
};

} // namespace amberquill::desktop
