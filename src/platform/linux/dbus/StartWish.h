#pragma once

#include "platform/linux/dbus/ApplicationRequest.h"
#include "platform/linux/files/Environment.h"

namespace amberquill::desktop {

// What a start of the program stands for: the request to show it, and whether it was the bus that started us,
// on behalf of calls that it holds back until we have the name.
struct StartWish {
    ApplicationRequest request;
    bool byTheBus = false;

    bool operator==(const StartWish&) const = default;
};

// As the environment tells that the program was started with.
[[nodiscard]] StartWish startWish(const Environment& environment);

} // namespace amberquill::desktop
