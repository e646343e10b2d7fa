#pragma once

#include "platform/linux/applications/icons/DecodingNotes.h"
#include "platform/linux/applications/icons/DecodingSuspects.h"

#include <QImage>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <utility>

namespace amberquill::desktop {

// Remembers, over the end of the process, which icon's decoding ended it, so that one bad file cannot stop
// every start: a guilty one is not decoded again until it changes. Costs two small writes for each file that
// this process decodes for the first time. Several processes may use one folder. Safe on any thread.
class DecodingJournal {
public:
    // `folder` is deletable at any time; with none to be had, nothing is remembered and all is decoded.
    // Nothing is read here: the first `decode` does that.
    explicit DecodingJournal(const std::string& folder);

    // What `work` answers, or a null image without asking it where the file is guilty.
    [[nodiscard]] QImage decode(const FileState& file, const std::function<QImage()>& work);

    // The process is about to end of its own will: what it still decodes is not to blame.
    void withdraw() { notes_.withdraw(); }

private:
    void start();
    // Whether the file is harmless, and how it stands otherwise.
    [[nodiscard]] std::pair<bool, DecodingSuspects::Standing> judged(const FileState& file);
    void clearOnDisk(const std::string& path);

    const std::string folder_;
    std::once_flag started_;
    std::mutex mutex_; // of the two below
    DecodingSuspects suspects_;
    std::set<FileState> harmless_; // decoded before by this process
    std::mutex trial_;             // held while a suspect is decoded: one at a time
    DecodingNotes notes_;
};

} // namespace amberquill::desktop
