#pragma once

#include "platform/Locations.h"
#include "platform/linux/environment/Environment.h"

namespace amberquill::desktop {

// The path of the program that runs, links resolved; empty where the system does not tell.
[[nodiscard]] QString runningProgram();

// Where things are kept by the XDG Base Directory Specification. A variable that is unset, empty or relative
// stands for its default. `program` is the running program's path: the nearest `*.app` folder around it is
// the launcher's own bundle.
[[nodiscard]] Locations locationsFromEnvironment(const Environment& environment,
                                                 const QString& program = runningProgram());

} // namespace amberquill::desktop
