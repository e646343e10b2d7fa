// platform/linux/session/: the program in the desktop session: a single instance, optionally started at
// login, ended by signals.
//
// Parts:
// - ApplicationRequest (pure): show, hide or toggle, as a D-Bus call and as the program's own start
//   (StartupRequest).
// - NameClaim: takes the name on the bus on a thread while the program starts, or hands the request to the
//   running instance. ApplicationObject: answers later requests. SingleInstance: combines both, and repeats
//   them on the next bus.
// - AutostartLoginItem: the entry in ~/.config/autostart.
// - ProcessSetup and TerminationSignals: malloc, fonts and signals of the process.
//
// Rules: a second start ends before it shows anything. A bus that does not answer delays a start by a second
// at most (ClaimBounds). After the bus is lost, attempts to find it are at most five seconds apart. Log:
// amberquill.session.
#pragma once

#include "platform/MainQueue.h"
#include "platform/linux/session/ApplicationObject.h"
#include "platform/linux/session/NameClaim.h"

#include <QFileSystemWatcher>
#include <QLoggingCategory>

namespace amberquill::desktop {

Q_DECLARE_LOGGING_CATEGORY(sessionLog)

// Holds the name that a NameClaim has taken, and answers requests. When the bus ends and another one starts
// at the same address, claims the name there: at once if the socket is in a folder that can be watched, or
// else within seconds. Main thread only.
class SingleInstance {
public:
    // Waits for the claim's result within its bounds: construct it late in a start, but before anything is
    // shown. `carryOut` gets each request; the constructor passes those that have already arrived. `cameBack`
    // is called when there is a bus again.
    SingleInstance(
        NameClaim& claim, QByteArray address, MainQueue& queue,
        std::function<void(const ApplicationRequest&)> carryOut, std::function<void()> cameBack = [] {});
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    ~SingleInstance() = default;

    // Whether the session has a bus that answers.
    [[nodiscard]] bool hasBus() const { return hasBus_; }

private:
    void settled(ClaimResult result);
    void lost();
    void claimAgainAfter(double seconds);
    void claimAgain(int attempts);
    void claimedAgain(ClaimResult result);

    QByteArray address_;
    MainQueue& queue_;
    std::function<void(const ApplicationRequest&)> carryOut_;
    std::function<void()> cameBack_;
    bool hasBus_ = false;
    // Watches the folder of the bus's socket while there is no bus.
    std::unique_ptr<QFileSystemWatcher> folderWatcher_;
    DelayedWork nextClaim_;
    double pause_ = 0;
    bool isClaiming_ = false;
    bool hasChangedMeanwhile_ = false;
    std::unique_ptr<ApplicationObject> object_;
    Context context_;
};

} // namespace amberquill::desktop
