#pragma once

#include <QStringList>
#include <functional>

namespace amberquill {

// Tells when something changed in or below folders. Main thread only.
class FolderWatcher {
public:
    FolderWatcher() = default;
    FolderWatcher(const FolderWatcher&) = delete;
    FolderWatcher& operator=(const FolderWatcher&) = delete;
    virtual ~FolderWatcher() = default;

    // From now on `changed` is called on the main thread after changes in these folders (missing ones
    // included: they may come) once it has been quiet for a moment. Replaces what was watched before.
    virtual void watch(const QStringList& folders, std::function<void()> changed) = 0;
};

class NullFolderWatcher final : public FolderWatcher {
public:
    void watch(const QStringList&, std::function<void()>) override {}
};

} // namespace amberquill
