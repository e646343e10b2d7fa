#pragma once

#include "model/LauncherModel.h"
#include "platform/Context.h"

#include <QObject>
#include <QStringList>
#include <array>
#include <functional>

namespace amberquill {

class FolderWatcher;
class MainQueue;

// Follows installations while the launcher runs: has the model scan when the application folders have
// changed, and looks for missing icons again after a while.
class LiveRefresh final : public QObject {
    Q_OBJECT

public:
    struct Services {
        LauncherModel& model;
        MainQueue& queue;
        FolderWatcher& watcher;
        std::function<void()> retryIcons; // looks again for icons that were missing
    };

    // Seconds after a change at which missing icons are looked for again: packages install icons after their
    // desktop entries.
    static constexpr std::array iconRetries = {1.0, 4.0, 15.0};

    explicit LiveRefresh(Services services, QObject* parent = nullptr);

    void watch(const QStringList& folders);

    // Scans as after a change in a watched folder.
    void refresh();

private:
    Services services_;
    bool changedDuringScan_ = false;
    Context context_;
};

} // namespace amberquill
