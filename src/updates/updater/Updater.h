// updates/updater/: finds, downloads, verifies and installs a newer version of the program. `Feed` reads the
// list of versions; `Fetch` and `Download` get bytes through `HttpGet`, from addresses that `AddressPolicy`
// allows; `Signature` checks them. `Updater` is the state machine that uses them all. It shows nothing
// itself: `UpdaterUserInterface` does. Begin with `Updater::check`.
#pragma once

#include "platform/MainQueue.h"
#include "updates/updater/BundleKeys.h"
#include "updates/updater/Download.h"
#include "updates/updater/Fetch.h"
#include "updates/updater/UpdaterDelegate.h"
#include "updates/updater/UpdaterUserInterface.h"

#include <QObject>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace amberquill {

class Preferences;

// Checks the feed that the bundle names for a newer version, once a day if the user allows it and whenever
// the user asks; then downloads, verifies and installs it and restarts the program. Main thread only.
//
// A session lasts from the start of a check to the return to Idle.
class Updater final : public QObject {
    Q_OBJECT

public:
    // Seconds.
    static constexpr double checkInterval = 24.0 * 60 * 60;
    static constexpr double maximumJitter = 60.0 * 60; // random delay of scheduled checks
    static constexpr double maximumWait = 60.0 * 60;   // between two looks at the date, which may jump
    static constexpr double busyRetry = 60;

    enum class State {
        Idle,
        Checking,
        Found,       // shown, or waiting until the user is not busy
        UpToDate,    // shown
        Failed,      // shown
        Downloading, // or paused
        Installing,  // the download is verified and put in place
        Installed,   // waiting for a restart
    };

    // All references outlive the updater. The installer also outlives the queue's background work.
    struct Services {
        MainQueue& queue;
        Preferences& preferences;
        ProgramInstaller& installer;
        UpdaterUserInterface& userInterface;
        UpdaterDelegate& delegate;
        BundleKeys keys;
        QString systemVersion;
        QString downloadFolder;       // absolute, used for nothing else
        std::function<bool()> isBusy; // whether a dialog would interrupt the user: during a drag, in a dialog
        std::function<double()> random; // in [0, 1)
        std::function<void()> quit;     // ends the program
        Timeouts timeouts = {};
    };

    explicit Updater(Services services, QObject* parent = nullptr);
    ~Updater() override;

    Updater(const Updater&) = delete;
    Updater& operator=(const Updater&) = delete;

    // Starts scheduled checks, if they are on: a day after the last check, or within an hour if there was
    // none; later while the user is busy. Fetches nothing at once.
    void start();

    // Whether scheduled checks are on: stored in the preferences, on by default. Without a feed there are no
    // scheduled checks.
    [[nodiscard]] bool automaticallyChecksForUpdates() const;
    void setAutomaticallyChecksForUpdates(bool on);

    // The date of the last check, by the machine's clock; none: there was none.
    [[nodiscard]] std::optional<std::chrono::sys_seconds> lastCheck() const;

    // A check by the user: its result is shown in any case, also a skipped version. If something is shown
    // already, brings it to the front instead.
    void checkForUpdates();

    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] const BundleKeys& keys() const { return services_.keys; }

    // The user's answers. Each does nothing in other states than those named.
    void install();     // Found
    void later();       // Found, Installed
    void skip();        // Found: scheduled checks do not show this version again
    void acknowledge(); // UpToDate, Failed
    void pause();       // Downloading
    void resume();      // Downloading
    void cancel();      // Checking, Downloading: the received part is kept for the next time
    void restart();     // Installed

private:
    template<typename Task, typename Answer>
    void compute(Task task, Answer answer);

    // Scheduled checks.
    void schedule();
    void checkIfDue();
    [[nodiscard]] double secondsUntilDue() const;
    void wakeUpIn(double seconds);

    // A session, in the order of its steps.
    void check(UpdateCheck check);
    void feedFetched(const Fetched& fetched);
    void feedRead(const std::optional<std::vector<FeedItem>>& items);
    void showFound();
    void download();
    void stage();
    void staged(const std::optional<QString>& version);
    void replaced(bool done);
    void offerRestart();
    void fail(UpdateError error);
    void endSession();

    Services services_;
    Fetch fetch_;
    State state_ = State::Idle;
    UpdateCheck check_ = UpdateCheck::Scheduled;
    FeedItem update_;                   // valid from State::Found on
    std::optional<FeedItem> installed_; // the version that has replaced this program
    std::optional<UpdateError> error_;
    std::unique_ptr<Download> download_;
    DelayedWork nextCheck_;
    DelayedWork nextTryToShow_;      // while the user is busy
    std::chrono::sys_seconds due_{}; // of the next check
    bool isStarted_ = false;
    bool isShown_ = false; // the user interface shows something
    Context session_;      // of background work
};

} // namespace amberquill
