#include "platform/linux/session/SingleInstance.h"

#include "platform/MainQueue.h"
#include "platform/linux/dbus/BusAddress.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(sessionLog, "amberquill.session", QtCriticalMsg)

namespace {

// Seconds between attempts to find the bus again: the first pause, doubled up to the longest. If the socket's
// folder is watched, these attempts are only a fallback for missed events.
constexpr double firstPause = 0.5;
constexpr double longestPause = 5;
constexpr double longestWatchedPause = 60;

// A bus listens only a moment after it has created its socket.
constexpr int attemptsAtNewSocket = 20;
constexpr std::chrono::milliseconds betweenAttempts{50};

ClaimResult claimAnew(const QByteArray& address, int attempts) {
    ClaimResult result;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (attempt > 0) {
            std::this_thread::sleep_for(betweenAttempts);
        }
        // If another program owns the name by now, it keeps the name.
        result = claimName(address, {}, {}, [] { return false; });
        if (result.kind != ClaimResult::Kind::NoBus) {
            break;
        }
    }
    return result;
}

} // namespace

SingleInstance::SingleInstance(NameClaim& claim, QByteArray address, MainQueue& queue,
                               std::function<void(const ApplicationRequest&)> carryOut,
                               std::function<void()> cameBack)
    : address_(std::move(address))
    , queue_(queue)
    , carryOut_(std::move(carryOut))
    , cameBack_(std::move(cameBack)) {
    auto result =
        claim.settle(queue_.answer(context_, [this](ClaimResult late) { settled(std::move(late)); }));
    if (result) {
        settled(std::move(*result));
    }
}

void SingleInstance::settled(ClaimResult result) {
    hasBus_ = result.kind != ClaimResult::Kind::NoBus;
    qCDebug(sessionLog) << (!hasBus_            ? "no session bus"
                            : result.connection ? "has the name on the bus"
                                                : "another program has the name on the bus");
    if (result.connection) {
        object_ = std::make_unique<ApplicationObject>(std::move(result.connection), carryOut_,
                                                      queue_.answer(context_, [this] { lost(); }));
    }
}

void SingleInstance::lost() {
    qCDebug(sessionLog) << "the session bus has gone";
    object_.reset();
    hasBus_ = false;
    pause_ = firstPause;
    const QString folder = busSocketFolder(address_);
    folderWatcher_ = std::make_unique<QFileSystemWatcher>();
    if (!folder.isEmpty() && folderWatcher_->addPath(folder)) {
        QObject::connect(folderWatcher_.get(), &QFileSystemWatcher::directoryChanged, folderWatcher_.get(),
                         [this] { claimAgain(attemptsAtNewSocket); });
    }
    // The next bus may already run.
    claimAgain(1);
}

void SingleInstance::claimAgainAfter(double seconds) {
    nextClaim_ = queue_.postAfter(seconds, [this] { claimAgain(1); });
}

void SingleInstance::claimAgain(int attempts) {
    if (std::exchange(isClaiming_, true)) {
        hasChangedMeanwhile_ = true;
        return;
    }
    nextClaim_.cancel();
    hasChangedMeanwhile_ = false;
    queue_.compute(
        context_, [address = address_, attempts] { return claimAnew(address, attempts); },
        [this](ClaimResult result) { claimedAgain(std::move(result)); }, Lane::Apart);
}

void SingleInstance::claimedAgain(ClaimResult result) {
    isClaiming_ = false;
    if (result.kind != ClaimResult::Kind::NoBus) {
        folderWatcher_.reset();
        settled(std::move(result));
        cameBack_();
    } else if (hasChangedMeanwhile_) {
        claimAgain(attemptsAtNewSocket);
    } else {
        claimAgainAfter(pause_);
        const bool isWatched = !folderWatcher_->directories().isEmpty();
        pause_ = std::min(2 * pause_, isWatched ? longestWatchedPause : longestPause);
    }
}

} // namespace amberquill::desktop
