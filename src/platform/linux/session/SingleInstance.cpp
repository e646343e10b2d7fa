#include "platform/linux/session/SingleInstance.h"

#include "platform/MainQueue.h"
#include "platform/linux/dbus/BusSocketFolder.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <thread>

namespace amberquill::desktop {

namespace {

// Seconds until a bus that has gone is looked for again: at first, and at most, each time twice as long.
// Where the folder of its socket tells of changes, looking by itself is for what that misses.
constexpr double firstPause = 0.5;
constexpr double longestPause = 5;
constexpr double longestWatchedPause = 60;

// A bus listens a moment after its socket is there.
constexpr int attemptsAtNewSocket = 20;
constexpr std::chrono::milliseconds betweenAttempts{50};

ClaimResult claimAnew(const QByteArray& address, int attempts) {
    ClaimResult result;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (attempt > 0) {
            std::this_thread::sleep_for(betweenAttempts);
        }
        // Whoever has the name by then keeps it.
        result = claimName(address, {}, {}, [] { return false; });
        if (result.kind != ClaimResult::Kind::NoBus) {
            break;
        }
    }
    return result;
}

} // namespace

struct SingleInstance::Late {
    std::mutex mutex;
    SingleInstance* instance = nullptr;
    MainQueue* queue = nullptr;

    // From any thread: has the instance do that on the main thread, where the instance ends too.
    static void tell(const std::shared_ptr<Late>& late, std::function<void(SingleInstance&)> what) {
        const std::scoped_lock lock(late->mutex);
        if (late->instance == nullptr) {
            return;
        }
        late->queue->post([late, what = std::move(what)] {
            if (late->instance != nullptr) {
                what(*late->instance);
            }
        });
    }
};

SingleInstance::SingleInstance(NameClaim& claim, QByteArray address, MainQueue& queue,
                               std::function<void(const ApplicationRequest&)> carryOut,
                               std::function<void()> cameBack)
    : address_(std::move(address))
    , queue_(queue)
    , carryOut_(std::move(carryOut))
    , cameBack_(std::move(cameBack))
    , late_(std::make_shared<Late>()) {
    late_->instance = this;
    late_->queue = &queue;
    auto result = claim.settle([late = late_](ClaimResult answer) {
        Late::tell(late, [answer = std::make_shared<ClaimResult>(std::move(answer))](
                             SingleInstance& instance) { instance.settled(std::move(*answer)); });
    });
    if (result) {
        settled(std::move(*result));
    }
}

SingleInstance::~SingleInstance() {
    const std::scoped_lock lock(late_->mutex);
    late_->instance = nullptr;
}

void SingleInstance::settled(ClaimResult result) {
    hasBus_ = result.kind != ClaimResult::Kind::NoBus;
    if (result.connection) {
        object_ =
            std::make_unique<ApplicationObject>(std::move(result.connection), carryOut_, [late = late_] {
                Late::tell(late, [](SingleInstance& instance) { instance.lost(); });
            });
    }
}

void SingleInstance::lost() {
    object_.reset();
    hasBus_ = false;
    pause_ = firstPause;
    const QString folder = busSocketFolder(address_);
    folderWatcher_ = std::make_unique<QFileSystemWatcher>();
    if (!folder.isEmpty() && folderWatcher_->addPath(folder)) {
        QObject::connect(folderWatcher_.get(), &QFileSystemWatcher::directoryChanged, folderWatcher_.get(),
                         [this] { claimAgain(attemptsAtNewSocket); });
    }
    // Another one may have come by now.
    claimAgain(1);
}

void SingleInstance::claimAgainAfter(double seconds) {
    nextClaim_.cancel();
    nextClaim_ = queue_.postAfter(seconds, [late = late_] {
        if (late->instance != nullptr) {
            late->instance->claimAgain(1);
        }
    });
}

void SingleInstance::claimAgain(int attempts) {
    if (std::exchange(isClaiming_, true)) {
        hasChangedMeanwhile_ = true;
        return;
    }
    nextClaim_.cancel();
    hasChangedMeanwhile_ = false;
    std::thread([late = late_, address = address_, attempts] {
        auto result = std::make_shared<ClaimResult>(claimAnew(address, attempts));
        Late::tell(late, [result](SingleInstance& instance) { instance.claimedAgain(std::move(*result)); });
    }).detach();
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
