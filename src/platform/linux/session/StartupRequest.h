#pragma once

#include "platform/linux/environment/Environment.h"
#include "platform/linux/session/ApplicationRequest.h"

#include <QByteArray>
#include <QList>

namespace amberquill::desktop {

// What a start of the program stands for: the request, which the running program gets, if there is one, and
// whether it was the bus that started us, on behalf of calls that it holds back until we have the name.
struct StartupRequest {
    ApplicationRequest request;
    bool byTheBus = false;

    bool operator==(const StartupRequest&) const = default;
};

// As the environment and the arguments tell that the program was started with: `--show`, which is what none
// of them stands for, `--hide` or `--toggle`; the last one counts, and others are not looked at.
[[nodiscard]] StartupRequest startupRequest(const Environment& environment,
                                            const QList<QByteArray>& arguments = {});

} // namespace amberquill::desktop
