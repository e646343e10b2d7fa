#pragma once

#include <QStringList>
#include <functional>

namespace amberquill {

// Reports changes in and below folders. Main thread only.
class FolderWatcher {
public:
    FolderWatcher() = default;
    FolderWatcher(const FolderWatcher&) = delete;
    FolderWatcher& operator=(const FolderWatcher&) = delete;
    virtual ~FolderWatcher() = default;

    // From now on `changed` is called after changes in these folders, once no more come for a moment. Folders
    // may be missing: their appearance is a change. Replaces the folders of an earlier call.
    virtual void watch(const QStringList& folders, std::function<void()> changed) = 0;
};

} // namespace amberquill
