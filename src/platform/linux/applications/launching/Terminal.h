#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace amberquill::desktop {

// Finds a program: its full path, or none where there is no such executable.
using ProgramLookup = std::function<std::optional<QString>(const QString& name)>;

// The words that, put before an argument vector, run it in a terminal: what the desktop's own
// `xdg-terminal-exec` decides, else the one that `preferred` (the variable TERMINAL, may be empty) names,
// else the first known one there is. The first word is a full path. None: there is no terminal.
std::optional<QStringList> terminalCommand(const ProgramLookup& find, const QString& preferred);

} // namespace amberquill::desktop
