#pragma once

#include "platform/linux/applications/launching/StartEnvironment.h"
#include "platform/linux/applications/launching/StartLimits.h"

namespace amberquill::desktop {

// What the launcher was given by whoever started it, and hands on to the applications it starts.
struct StartState {
    StartEnvironment environment;
    StartLimits limits;

    // This process's, as it is now. For the very start of main(), before the application object or anything
    // else changes the environment or a limit.
    [[nodiscard]] static StartState capture() {
        return {StartEnvironment::capture(), StartLimits::capture()};
    }
};

} // namespace amberquill::desktop
