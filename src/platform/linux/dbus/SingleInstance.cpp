#include "platform/linux/dbus/SingleInstance.h"

#include "platform/MainQueue.h"

#include <algorithm>
#include <mutex>
#include <thread>

namespace amberquill::desktop {

namespace {

// Seconds until a bus that has gone is looked for again: at first, and at most, each time twice as long.
constexpr double firstPause = 0.5;
constexpr double longestPause = 60;

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
                               std::function<void(const ApplicationRequest&)> carryOut)
    : address_(std::move(address))
    , queue_(queue)
    , carryOut_(std::move(carryOut))
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
    claimAgainAfter(firstPause);
}

void SingleInstance::claimAgainAfter(double seconds) {
    queue_.postAfter(seconds, [late = late_, address = address_, seconds] {
        // Whoever has the name by then keeps it.
        std::thread([late, address, seconds] {
            auto result = std::make_shared<ClaimResult>(claimName(address, {}, {}, [] { return false; }));
            Late::tell(late, [result, seconds](SingleInstance& instance) {
                if (result->kind == ClaimResult::Kind::NoBus) {
                    instance.claimAgainAfter(std::min(2 * seconds, longestPause));
                } else {
                    instance.settled(std::move(*result));
                }
            });
        }).detach();
    });
}

} // namespace amberquill::desktop
