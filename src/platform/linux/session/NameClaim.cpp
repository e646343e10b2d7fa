#include "platform/linux/session/NameClaim.h"

#include "platform/common/Thread.h"

#include <QDeadlineTimer>
#include <condition_variable>
#include <mutex>

namespace amberquill::desktop {

namespace {

using std::chrono::milliseconds;

enum class HandOver {
    Done,
    OwnerIsGone,
    Failed,
};

HandOver handOver(DBusConnection& bus, const ApplicationRequest& request, milliseconds longest) {
    const BusMessage asked = makeRequestCall(request);
    const BusReply reply = call(bus, *asked, longest);
    if (reply) {
        return HandOver::Done;
    }
    const bool mayBeGone = reply.error == DBUS_ERROR_SERVICE_UNKNOWN ||
                           reply.error == DBUS_ERROR_NAME_HAS_NO_OWNER || reply.error == DBUS_ERROR_NO_REPLY;
    return mayBeGone ? HandOver::OwnerIsGone : HandOver::Failed;
}

} // namespace

ClaimResult claimName(const QByteArray& address, const StartupRequest& startup, const ClaimBounds& bounds,
                      const std::function<bool()>& mayHandOver) {
    BusConnection bus = connectToBus(address, bounds.bus);
    if (!bus) {
        return {};
    }
    std::optional<QDeadlineTimer> end;
    while (true) {
        const std::optional<bool> isOurs = takeName(*bus, applicationBusName, bounds.bus);
        if (!isOurs) {
            return {};
        }
        if (*isOurs) {
            if (startup.byTheBus) {
                catchUp(*bus, bounds.bus);
            }
            return {ClaimResult::Kind::Owner, std::move(bus)};
        }
        if (!end) {
            if (!mayHandOver()) {
                return {ClaimResult::Kind::Stranger, nullptr};
            }
            end = QDeadlineTimer(bounds.owner);
        }
        const milliseconds left(end->remainingTime());
        if (left <= milliseconds::zero()) {
            return {ClaimResult::Kind::Stranger, nullptr};
        }
        switch (handOver(*bus, startup.request, left)) {
        case HandOver::Done:
            return {ClaimResult::Kind::HandedOver, nullptr};
        case HandOver::OwnerIsGone:
            break;
        case HandOver::Failed:
            return {ClaimResult::Kind::Stranger, nullptr};
        }
    }
}

struct NameClaim::State {
    std::mutex mutex;
    std::condition_variable changed;
    QDeadlineTimer startEnds;
    QDeadlineTimer ownerEnds;
    bool handsOver = false;
    bool startContinued = false; // without the result
    std::optional<ClaimResult> result;
    std::function<void(ClaimResult)> then;
};

NameClaim::NameClaim(const QByteArray& address, StartupRequest startup, const ClaimBounds& bounds,
                     std::function<void()> handedOver)
    : state_(std::make_shared<State>()) {
    state_->startEnds = QDeadlineTimer(bounds.start);
    const auto mayHandOver = [state = state_, bounds] {
        const std::scoped_lock lock(state->mutex);
        state->handsOver = !state->startContinued;
        // If the owner does not answer, the bus is asked once more: add its time.
        state->ownerEnds = QDeadlineTimer(bounds.owner + bounds.start);
        state->changed.notify_all();
        return state->handsOver;
    };
    const auto claim = [state = state_, address, startup = std::move(startup), bounds, mayHandOver,
                        handedOver = std::move(handedOver)] {
        ClaimResult result = claimName(address, startup, bounds, mayHandOver);
        const std::scoped_lock lock(state->mutex);
        if (result.kind == ClaimResult::Kind::HandedOver && !state->startContinued) {
            handedOver();
        }
        if (state->then) {
            state->then(std::move(result));
        } else {
            state->result = std::move(result);
        }
        state->changed.notify_all();
    };
    if (!startThread(claim)) {
        claim();
    }
}

NameClaim::~NameClaim() {
    const std::scoped_lock lock(state_->mutex);
    state_->startContinued = true;
    state_->then = nullptr;
}

std::optional<ClaimResult> NameClaim::settle(std::function<void(ClaimResult)> then) {
    std::unique_lock lock(state_->mutex);
    const auto end = [this] { return state_->handsOver ? state_->ownerEnds : state_->startEnds; };
    while (!state_->result && !end().hasExpired()) {
        state_->changed.wait_for(lock, end().remainingTimeAsDuration());
    }
    if (state_->result) {
        return std::exchange(state_->result, std::nullopt);
    }
    state_->startContinued = true;
    state_->then = std::move(then);
    return std::nullopt;
}

} // namespace amberquill::desktop
