#pragma once

#include "platform/FolderWatcher.h"
#include "platform/MainQueue.h"

#include <memory>

namespace amberquill {
class RootReaders;
}

namespace amberquill::desktop {

// Watches folders by inotify, with their sub-folders to a depth of five. New sub-folders, and missing
// folders, are watched as soon as they exist. Folders are walked on a background thread; nothing runs while
// nothing changes. With `readers`, a folder that does not answer is left out and does not delay the others.
// When the readers report that it has answered, call `watch` again.
//
// `changed` is called after `quietSeconds` without a change, and every `patienceSeconds` while changes go on.
class InotifyFolderWatcher final : public FolderWatcher {
public:
    static constexpr double quietSeconds = 0.4;
    static constexpr double patienceSeconds = 5.0;

    // Construct it after the application object. `queue` and `readers` outlive the watcher and its walks.
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
