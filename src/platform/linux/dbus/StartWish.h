#pragma once

#include "platform/linux/dbus/ApplicationRequest.h"
#include "platform/linux/files/Environment.h"

#include <QByteArray>
#include <QList>

namespace amberquill::desktop {

// What a start of the program stands for: the request, which the running program gets, if there is one, and
// whether it was the bus that started us, on behalf of calls that it holds back until we have the name.
struct StartWish {
    ApplicationRequest request;
    bool byTheBus = false;

    bool operator==(const StartWish&) const = default;
};

// As the environment and the arguments tell that the program was started with: `--show`, which is what none
// of them stands for, `--hide` or `--toggle`; the last one counts, and others are not looked at.
[[nodiscard]] StartWish startWish(const Environment& environment, const QList<QByteArray>& arguments = {});

} // namespace amberquill::desktop
