#pragma once

#include "platform/FolderWatcher.h"

#include <utility>

namespace amberquill {

// A watcher whose folders change when a test says so.
class HandWatcher final : public FolderWatcher {
public:
    void watch(const QStringList& folders, std::function<void()> changed) override {
        watched = folders;
        changed_ = std::move(changed);
    }

    void change() const { changed_(); }

    QStringList watched;

private:
    std::function<void()> changed_;
};

} // namespace amberquill
