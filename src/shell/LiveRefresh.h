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

// Keeps the launcher in step with what is installed while it runs: asks the model to scan when the
// application folders have changed, and for missing icons once more when they have had time to arrive.
class LiveRefresh final : public QObject {
    Q_OBJECT

public:
    struct Services {
        LauncherModel& model;
        MainQueue& queue;
        FolderWatcher& watcher;
        std::function<void()> retryIcons; // looks again for the icons that were not to be had
    };

    // Seconds after a change at which missing icons are looked for again: packages install them after the
    // entries.
    static constexpr std::array iconRetries = {1.0, 4.0, 15.0};

    explicit LiveRefresh(Services services, QObject* parent = nullptr);

    // Begins to watch these folders.
    void watch(const QStringList& folders);

    // As after a change of theirs.
    void refresh();

private:
    Services services_;
    bool changedDuringScan_ = false;
    Context context_;
};

} // namespace amberquill
