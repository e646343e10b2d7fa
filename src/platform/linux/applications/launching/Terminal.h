#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace amberquill::desktop {

// Finds a program's absolute path. None: no such executable.
using ProgramFinder = std::function<std::optional<QString>(const QString& name)>;

// The words to put before an argument vector to run it in a terminal: `xdg-terminal-exec`, else the terminal
// that `preferred` names (the variable TERMINAL, may be empty), else the first known one that is installed.
// The first word is an absolute path. None: no terminal is installed.
std::optional<QStringList> terminalCommand(const ProgramFinder& find, const QString& preferred);

} // namespace amberquill::desktop
