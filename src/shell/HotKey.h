#pragma once

#include "platform/GlobalShortcut.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <set>

namespace amberquill {

// A global shortcut, registered while this object exists. Each press runs the action on the main thread. The
// service outlives the hot key. Main thread only.
class HotKey {
public:
    using Action = std::function<void()>;

    // Registers at once; a refusal is silent. Replaces the action of an earlier hot key with the same id.
    HotKey(GlobalShortcut& service, const KeyChord& chord, std::uint32_t id, Action action);
    ~HotKey();

    HotKey(const HotKey&) = delete;
    HotKey& operator=(const HotKey&) = delete;

private:
    static void installHandlerIfNeeded(GlobalShortcut& service);

    GlobalShortcut& service_;
    std::uint32_t id_;
};

// How a press of the launcher's keys reaches the program.
enum class PressRoute {
    HotKey,
    Bus,
};

// Recognises duplicates: where a desktop delivers the same press by several routes, only the first delivery
// counts. Two presses by the same route are two presses, however fast.
class PressDeduplicator {
public:
    // Seconds within which all routes have delivered a press.
    static constexpr double longestDelay = 0.3;

    // Whether a delivery by this route at that time, in seconds, is a new press.
    bool isNewPress(PressRoute route, double now) {
        if (now - firstDelivery_ <= longestDelay && routes_.insert(route).second) {
            return false;
        }
        firstDelivery_ = now;
        routes_ = {route};
        return true;
    }

private:
    double firstDelivery_ = -std::numeric_limits<double>::infinity(); // of the latest press
    std::set<PressRoute> routes_;                                     // that have delivered the latest press
};

} // namespace amberquill
