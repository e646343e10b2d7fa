#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <vector>

namespace amberquill::desktop {

// The version that the launcher at `path` says it is: `Amberquill 1.2.3` is what it prints when it is started
// with `--version`. Waits for that, for half a minute at most. None: it does not start, or says something
// else. Any thread.
[[nodiscard]] std::optional<QString> versionOfProgram(const QByteArray& path,
                                                      const std::vector<QByteArray>& environment);

// The version in the line that the launcher prints.
[[nodiscard]] std::optional<QString> versionInLine(const QByteArray& line);

} // namespace amberquill::desktop
