#pragma once

#include "platform/MainQueue.h"
#include "platform/linux/session/ApplicationObject.h"
#include "platform/linux/session/NameClaim.h"

#include <QFileSystemWatcher>

namespace amberquill::desktop {

// The one running program, as the bus knows it: what comes of a claim. When the bus goes and another comes at
// the same address, the name is claimed there again: at once where the bus's socket is in a folder, or else
// within seconds. Main thread only.
class SingleInstance {
public:
    // Waits for the claim's end within its bounds, so it is made as late in a start as can be, yet before
    // anything is shown. Then `carryOut` gets what others ask; what was asked by then, before this returns.
    // `cameBack` is called when there is a bus again after one has gone.
    SingleInstance(
        NameClaim& claim, QByteArray address, MainQueue& queue,
        std::function<void(const ApplicationRequest&)> carryOut, std::function<void()> cameBack = [] {});
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    ~SingleInstance() = default;

    // Whether the session has a bus, and that answers.
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
    // Of the folder of the bus's socket; there while a bus that has gone is waited for.
    std::unique_ptr<QFileSystemWatcher> folderWatcher_;
    DelayedWork nextClaim_;
    double pause_ = 0;
    bool isClaiming_ = false;
    bool hasChangedMeanwhile_ = false;
    std::unique_ptr<ApplicationObject> object_;
    Context context_;
};

} // namespace amberquill::desktop
