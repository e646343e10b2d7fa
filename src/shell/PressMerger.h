#pragma once

#include <cstddef>
#include <limits>
#include <set>

namespace amberquill {

// By what way a press of the launcher's keys can reach it.
enum class PressRoute {
    hotKey,
    bus,
};

// Tells presses from their echoes: where a desktop delivers the same press by several routes, the first
// counts. Two presses by one route are two presses, however fast.
class PressMerger {
public:
    // Seconds within which a press has come by all its routes.
    static constexpr double longestEcho = 0.3;

    // Whether what comes by the route at that time, in seconds, is a press that has not come by another.
    bool isNewPress(PressRoute route, double now) {
        if (now - begun_ <= longestEcho && came_.insert(route).second) {
            return false;
        }
        begun_ = now;
        came_ = {route};
        return true;
    }

private:
    double begun_ = -std::numeric_limits<double>::infinity(); // of the latest press
    std::set<PressRoute> came_;                               // the routes it has come by
};

} // namespace amberquill
