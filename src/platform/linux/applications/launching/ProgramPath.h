#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace amberquill::desktop {

// The executable file that a program's name stands for: the first in `folders` or, where the name has a slash
// in it, that very file, a relative one below `workingDirectory`. None: there is none, or it is not
// executable. Any thread.
[[nodiscard]] std::optional<QString> findProgram(const QString& name, const QStringList& folders,
                                                 const QString& workingDirectory);

// Whether there is a regular file that may be executed. Any thread.
[[nodiscard]] bool isExecutableFile(const QString& path);

} // namespace amberquill::desktop
