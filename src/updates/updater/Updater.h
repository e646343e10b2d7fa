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

namespace amberquill {

class Preferences;

// Keeps the program up to date: looks at the feed that the bundle names, once a day where the user lets it
// and when the user asks, and takes an update from the first question to the new program's start. Main thread
// only.
class Updater final : public QObject {
    Q_OBJECT

public:
    // Seconds.
    static constexpr double checkInterval = 24.0 * 60 * 60;
    static constexpr double spread = 60.0 * 60;    // by which checks come later, at random
    static constexpr double clockLook = 60.0 * 60; // longest time between two looks at the date
    static constexpr double busyRetry = 60;

    enum class State {
        Idle,
        Checking,
        Found,       // shown, or waiting until the user is not busy
        Nothing,     // no update: shown
        Refused,     // an error: shown
        Downloading, // also while paused
        Installing,  // all is here: checked, then put in place
        Installed,   // the new program waits for a restart
    };

    // All of it outlives the updater, and the installer the queue's background work too.
    struct Services {
        MainQueue& queue;
        Preferences& preferences;
        ProgramInstaller& installer;
        UpdaterUserInterface& userInterface;
        UpdaterDelegate& delegate;
        BundleKeys keys;
        QString systemVersion;
        QString downloadFolder;         // absolute; of no other use
        std::function<bool()> isBusy;   // whether the user is in the midst of something: a drag, a dialog
        std::function<double()> random; // 0 … 1, without 1
        std::function<void()> quit;     // ends the program
        TimeOuts timeOuts = {};
    };

    explicit Updater(Services services, QObject* parent = nullptr);
    ~Updater() override;

    Updater(const Updater&) = delete;
    Updater& operator=(const Updater&) = delete;

    // From now on checks are made by themselves, where that is wanted: one a day after the last, or the first
    // within the hour; while the user is busy, later. Fetches nothing at once.
    void start();

    // Whether checks are made by themselves: kept in the preferences, on where nothing is kept. Without a
    // feed there is nothing to check either way.
    [[nodiscard]] bool automaticallyChecksForUpdates() const;
    void setAutomaticallyChecksForUpdates(bool on);

    // When the last check was made, by the machine's clock; none: never.
    [[nodiscard]] std::optional<std::chrono::sys_seconds> lastCheck() const;

    // The user asks: shows what comes of it, also what was skipped before. While something is shown already,
    // that comes to the front.
    void checkForUpdates();

    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] const BundleKeys& keys() const { return services_.keys; }

    // The user's answers. Each does nothing in a state that does not ask for it.
    void install();     // found
    void later();       // found, installed
    void skip();        // found: this version is not shown again by itself
    void acknowledge(); // nothing, refused
    void pause();       // downloading
    void resume();      // downloading, paused
    void cancel();      // checking, downloading: what has come is kept for the next time
    void restart();     // installed

private:
    void schedule();
    void lookAtDate();
    [[nodiscard]] double secondsUntilDue() const;
    void wakeAfter(double seconds);
    void check(UpdateCheck check);
    void feedArrived(const Fetched& fetched);
    void decide(const std::optional<std::vector<FeedItem>>& items);
    void showFound();
    void refuse(UpdateError error);
    void download();
    void stage();
    void staged(const std::optional<QString>& version);
    void replaced(bool done);
    void awaitRestart();
    void endSession();
    template<typename Task, typename Then>
    void compute(Task task, Then then);

    Services services_;
    Fetch fetch_;
    State state_ = State::Idle;
    UpdateCheck check_ = UpdateCheck::Scheduled;
    FeedItem update_;                   // from `found` on
    std::optional<FeedItem> installed_; // what has taken this program's place
    std::optional<UpdateError> error_;
    std::unique_ptr<Download> download_;
    DelayedWork timer_;              // of the next check
    DelayedWork retry_;              // of showing what was found
    std::chrono::sys_seconds due_{}; // of the next check
    unsigned session_ = 0;           // tells what comes back from the background that its time is over
    bool isStarted_ = false;
    bool isShown_ = false; // the user interface has something on the screen
};

} // namespace amberquill
