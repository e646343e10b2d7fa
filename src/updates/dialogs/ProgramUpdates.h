#pragma once

#include "updates/dialogs/UpdateChecker.h"
#include "updates/dialogs/UpdateDialogs.h"

#include <QString>
#include <functional>
#include <memory>

namespace amberquill {

class MainBundle;
class MainQueue;
class Preferences;
class ProgramInstaller;

// The program's updates as a whole: the updater, its dialogs and its front, tied to each other. Making it
// reads what the bundle says and touches no network. Main thread only.
class ProgramUpdates final {
public:
    // All of it outlives the updates; the installer the queue's background work too.
    struct Services {
        MainQueue& queue;
        Preferences& preferences;
        ProgramInstaller& installer;
        const MainBundle& bundle;
        QString downloadFolder;       // absolute; of no other use
        std::function<bool()> isBusy; // whether the user is in the midst of something
        UpdateDialogs::Services dialogs;
        std::function<void()> quit;
    };

    explicit ProgramUpdates(Services services);
    ~ProgramUpdates();

    ProgramUpdates(const ProgramUpdates&) = delete;
    ProgramUpdates& operator=(const ProgramUpdates&) = delete;

    // From now on checks are made by themselves, where that is wanted. Nothing is fetched at once.
    void start();

    [[nodiscard]] UpdateChecker& checker();

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace amberquill
