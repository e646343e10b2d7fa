#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QByteArray>
#include <QByteArrayView>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

// The icon files that could not be decoded, which are not tried again.
namespace amberquill::desktop {

// One version of a regular file. When the file changes, so does this value.
struct FileState {
    std::string path;
    std::int64_t modified = 0; // nanoseconds since 1970
    std::int64_t size = 0;     // bytes

    bool operator==(const FileState&) const = default;
};

// The state of an open file. None: it is not a regular file.
[[nodiscard]] std::optional<FileState> fileState(const FileDescriptor& file, const std::string& path);

// The list as a small text file: a heading with the program's version, and a line for each file, the newest
// last. Beyond the maximum the oldest files are dropped.
class UndecodableList {
public:
    static constexpr std::size_t maximumFiles = 256;
    static constexpr qsizetype maximumBytes = qsizetype{1024} * 1024; // of the text

    // False for a file that has changed since.
    [[nodiscard]] bool contains(const FileState& file) const;

    // Adds the file as the newest. Replaces an earlier state of the same path.
    void put(const FileState& file);
    void put(const UndecodableList& others);

    [[nodiscard]] QByteArray written(const std::string& version) const;
    // Skips malformed lines. The list of another version is empty: this version may decode those files.
    [[nodiscard]] static UndecodableList read(QByteArrayView text, const std::string& version);

private:
    std::vector<FileState> files_; // the oldest first
};

// The list of this process, kept in a file across restarts until a listed file or the program changes.
// Several processes may share the file. If it cannot be written, the list is kept in memory. Safe on any
// thread; reads and writes the disk, so not for the main thread.
class UndecodableFiles {
public:
    // The list is read at the first question. `version`: the program's.
    UndecodableFiles(std::string path, std::string version);

    [[nodiscard]] bool contains(const FileState& file);
    void add(const FileState& file);

private:
    [[nodiscard]] UndecodableList read() const;
    void readOnce();

    const std::string path_;
    const std::string version_;
    std::once_flag isRead_;
    std::mutex mutex_;
    UndecodableList list_;    // guarded by the mutex
    std::mutex writingMutex_; // one writer at a time
};

} // namespace amberquill::desktop
