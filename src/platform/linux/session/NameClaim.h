#pragma once

#include "platform/linux/session/ApplicationRequest.h"

#include <chrono>
#include <functional>
#include <memory>

namespace amberquill::desktop {

// Limits of the waits.
struct ClaimBounds {
    std::chrono::milliseconds bus{10'000};  // for each answer of the bus, on the background thread
    std::chrono::milliseconds start{1'000}; // for the bus's answer; then the start continues without it
    std::chrono::milliseconds owner{3'000}; // for the running program to take the request
};

// The result of the search for a running instance.
struct ClaimResult {
    enum class Kind {
        NoBus,      // there is no bus, or it does not answer
        Owner,      // we have the name, on `connection`
        HandedOver, // the running program has taken the request
        Stranger,   // another program has the name and did not take the request
    };

    Kind kind = Kind::NoBus;
    BusConnection connection;
};

// Takes the program's name on the bus, or else hands the request over to the name's owner. If the owner ends
// meanwhile, tries again to take the name. Blocks, within the bounds. Before handing over, calls
// `mayHandOver`; if that returns false, the owner counts as a stranger.
[[nodiscard]] ClaimResult claimName(const QByteArray& address, const StartupRequest& startup,
                                    const ClaimBounds& bounds, const std::function<bool()>& mayHandOver);

// Runs claimName on a thread of its own while the program starts.
class NameClaim {
public:
    // `handedOver` is called on that thread as soon as the running program has taken the request, but never
    // after `settle` has returned or the claim is destroyed. It must end the process and do nothing else.
    NameClaim(const QByteArray& address, StartupRequest startup, const ClaimBounds& bounds,
              std::function<void()> handedOver);
    NameClaim(const NameClaim&) = delete;
    NameClaim& operator=(const NameClaim&) = delete;
    // Detaches a thread that still waits for the bus.
    ~NameClaim();

    // Waits for the result within ClaimBounds::start. None: not yet; `then` will be called with the result on
    // the claim's thread, unless this object is destroyed before.
    [[nodiscard]] std::optional<ClaimResult> settle(std::function<void(ClaimResult)> then);

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace amberquill::desktop
