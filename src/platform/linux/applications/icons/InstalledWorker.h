#pragma once

#include "platform/linux/applications/icons/WorkerProcess.h"
#include "platform/linux/environment/Environment.h"

#include <QString>

namespace amberquill::desktop {

// The program that comes with this launcher, which runs from the file `launcher`: beside it in a build tree,
// else where both are installed, wherever that folder is mounted. Nowhere for an empty
// `launcher`. Of the environment it is told where the user's fonts are, which language their names are in,
// and where a mounted launcher's libraries lie.
[[nodiscard]] WorkerProgram installedWorker(const QString& launcher, const Environment& environment);

} // namespace amberquill::desktop
