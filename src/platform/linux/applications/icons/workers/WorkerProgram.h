#pragma once

#include "platform/linux/environment/Environment.h"

#include <QString>
#include <string>
#include <vector>

namespace amberquill::desktop {

// The program that decodes icons, and its environment.
struct WorkerProgram {
    std::vector<std::string> paths;       // candidates: the first that can be started is used
    std::vector<std::string> environment; // NAME=value; no other variable is passed on
};

// The program that belongs to this launcher, whose own file is `launcher`: beside it in a build tree, else in
// the installed libexec folder, relative to the launcher. No paths for an empty `launcher`. Its environment
// has the variables for fonts, for their names' language, and for the libraries of a mounted launcher.
[[nodiscard]] WorkerProgram installedWorkerProgram(const QString& launcher, const Environment& environment);

} // namespace amberquill::desktop
