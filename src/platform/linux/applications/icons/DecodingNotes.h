#pragma once

#include "platform/linux/applications/icons/FileState.h"
#include "platform/linux/files/FileDescriptor.h"

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace amberquill::desktop {

// What this process is decoding at the moment, on the disk: a file of its own with a slot for each file that
// is being decoded. What is written is in the system's hands at once and so outlives the process, however it
// ends; it need not outlive the system, so nothing waits for the disk. Safe on any thread.
class DecodingNotes {
public:
    static constexpr unsigned slotCount = 64;

    // The folder is made, and the file in it, with the first note.
    explicit DecodingNotes(std::string folder);
    DecodingNotes(const DecodingNotes&) = delete;
    DecodingNotes& operator=(const DecodingNotes&) = delete;
    ~DecodingNotes();

    // Notes that the file is being decoded. The answer is for `erase`. None: it could not be noted.
    [[nodiscard]] std::optional<unsigned> write(const FileState& file);
    void erase(unsigned slot);

    // From now on nothing that is or will be noted outlives the process.
    void withdraw();

private:
    void open();

    const std::string folder_;
    std::once_flag opened_;
    std::string path_;
    FileDescriptor file_;
    std::atomic<std::uint64_t> taken_ = 0; // a bit for each slot
};

// What processes that are no more were decoding when they ended, a list for each that was decoding anything.
// Their files are removed. A process is known to live by the lock it holds on its file.
[[nodiscard]] std::vector<std::vector<FileState>> takeAbandonedNotes(const std::string& folder);

} // namespace amberquill::desktop
