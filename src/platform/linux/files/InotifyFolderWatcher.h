#pragma once

#include "platform/FolderWatcher.h"
#include "platform/MainQueue.h"

#include <memory>

namespace amberquill {
class RootReaders;
}

namespace amberquill::desktop {

// Folders watched by inotify, with their sub-folders to a depth of five. New sub-folders are watched as they
// come, and missing folders as soon as they do. The folders are walked away from the main thread; while
// nothing changes, nothing runs. With readers, a folder that does not answer is left out and keeps no other
// from being watched: whoever hears from the readers that it has answered asks to watch it again.
//
// `changed` is called once it has been quiet for `quietSeconds`, and in the midst of changes that do not end
// every `patienceSeconds`.
class InotifyFolderWatcher final : public FolderWatcher {
public:
    static constexpr double quietSeconds = 0.4;
    static constexpr double patienceSeconds = 5.0;

    // Needs the application object's event loop. `queue` and `readers` outlive the watcher and its walks.
    explicit InotifyFolderWatcher(MainQueue& queue, RootReaders* readers = nullptr);
    InotifyFolderWatcher(const InotifyFolderWatcher&) = delete;
    InotifyFolderWatcher& operator=(const InotifyFolderWatcher&) = delete;
    ~InotifyFolderWatcher() override;

    void watch(const QStringList& folders, std::function<void()> changed) override;

private:
    class Watching;

    MainQueue& queue_;
    RootReaders* readers_;
    std::unique_ptr<Watching> watching_;
};

} // namespace amberquill::desktop
