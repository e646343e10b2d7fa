#pragma once

#include "platform/linux/session/ApplicationRequest.h"

#include <chrono>
#include <functional>
#include <memory>

namespace amberquill::desktop {

// How long others are waited for.
struct ClaimBounds {
    std::chrono::milliseconds bus{10'000};  // until each answer of the bus, away from the main thread
    std::chrono::milliseconds start{1'000}; // until a start goes on without the bus's answer
    std::chrono::milliseconds owner{3'000}; // until the running program has taken the request
};

// How the question whether the program runs already ended.
struct ClaimResult {
    enum class Kind {
        NoBus,      // there is none, or it does not answer
        Owner,      // we have the name, on `connection`
        HandedOver, // the running program has taken the request
        Stranger,   // who has the name did not take the request
    };

    Kind kind = Kind::NoBus;
    BusConnection connection;
};

// Takes the program's name on the bus, or else hands the request over to whoever has it; where that one ends
// meanwhile, the name is ours. Blocks, within the bounds. `mayHandOver` is asked once it comes to that; where
// it says no, the owner counts as a stranger.
[[nodiscard]] ClaimResult claimName(const QByteArray& address, const StartupRequest& startup,
                                    const ClaimBounds& bounds, const std::function<bool()>& mayHandOver);

// The same on a thread of its own, while the program starts.
class NameClaim {
public:
    // `handedOver` is called on that thread as soon as the running program has taken the request, and never
    // once `settle` has returned; nothing else is to be done then but to end the process.
    NameClaim(const QByteArray& address, StartupRequest startup, const ClaimBounds& bounds,
              std::function<void()> handedOver);
    NameClaim(const NameClaim&) = delete;
    NameClaim& operator=(const NameClaim&) = delete;
    // Lets go of a thread that still waits for the bus.
    ~NameClaim();

    // Waits for the end, within the bounds of a start. Later than that, `then` is called with the result, on
    // the claim's thread, unless the claim is gone by then. None: not yet.
    [[nodiscard]] std::optional<ClaimResult> settle(std::function<void(ClaimResult)> then);

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace amberquill::desktop
