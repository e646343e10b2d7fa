#include "platform/linux/dbus/SingleInstance.h"

#include "platform/MainQueue.h"

#include <mutex>

namespace amberquill::desktop {

struct SingleInstance::Late {
    std::mutex mutex;
    SingleInstance* instance = nullptr;
    MainQueue* queue = nullptr;
};

SingleInstance::SingleInstance(NameClaim& claim, MainQueue& queue,
                               std::function<void(const ApplicationRequest&)> carryOut)
    : carryOut_(std::move(carryOut))
    , late_(std::make_shared<Late>()) {
    late_->instance = this;
    late_->queue = &queue;
    auto result = claim.settle([late = late_](ClaimResult answer) {
        const std::scoped_lock lock(late->mutex);
        if (late->instance == nullptr) {
            return;
        }
        late->queue->post([late, answer = std::make_shared<ClaimResult>(std::move(answer))] {
            // On the main thread, where the instance ends too.
            if (late->instance != nullptr) {
                late->instance->settled(std::move(*answer));
            }
        });
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
        object_ = std::make_unique<ApplicationObject>(std::move(result.connection), carryOut_);
    }
}

} // namespace amberquill::desktop
