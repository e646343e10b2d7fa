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

// Creates and connects the updater, its dialogs and the UpdateChecker. The constructor reads the bundle's
// keys and does not use the network. Main thread only.
class ProgramUpdates final {
public:
    // All references outlive this object. The installer also outlives the queue's background work.
    struct Services {
        MainQueue& queue;
        Preferences& preferences;
        ProgramInstaller& installer;
        const MainBundle& bundle;
        QString downloadFolder;       // absolute, used for nothing else
        std::function<bool()> isBusy; // whether a dialog would interrupt the user
        UpdateDialogs::Services dialogs;
        std::function<void()> quit;
    };

    explicit ProgramUpdates(Services services);
    ~ProgramUpdates();

    ProgramUpdates(const ProgramUpdates&) = delete;
    ProgramUpdates& operator=(const ProgramUpdates&) = delete;

    // Starts scheduled checks, if they are on. Fetches nothing at once.
    void start();

    [[nodiscard]] UpdateChecker& checker();

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace amberquill
